#pragma once

#import <AppKit/AppKit.h>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/MenuPanelModel.h"

/// The card of the status item's panel. Observes its model, which must outlive it, and calls the
/// model's `onResize` when it needs another height. Always dark.
@interface OrvelMenuPanelView : NSView
- (instancetype)initWithModel:(OrvelUI::MenuPanelModel*)model;
/// The needed size in points; `room` is the available height.
- (OrvelCore::Size)fittingSize:(double)room;
@end
