#pragma once

#import <AppKit/AppKit.h>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/MenuPanelModel.h"

/// The card of the status item's panel. Follows its model, which outlives it, and calls the model's
/// `onResize` when it needs another height. Always dark.
@interface OrvelMenuPanelView : NSView
- (instancetype)initWithModel:(OrvelUI::MenuPanelModel*)model;
/// Points; `room` is the height that there is.
- (OrvelCore::Size)fittingSize:(double)room;
@end
