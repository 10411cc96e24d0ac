#pragma once

#import <AppKit/AppKit.h>

#include "OrvelBlur/OverlayPanel.h"

/// The window of an overlay panel. The owner outlives it, or sets itself to null before it goes.
@interface OrvelPanel : NSPanel
@property(nonatomic) OrvelBlur::OverlayPanel* owner;
@end

/// The panel's content view, with its origin at the top left.
@interface OrvelPanelRoot : NSView
@property(nonatomic) OrvelBlur::OverlayPanel* owner;
@end

/// The noise that keeps a blurred gradient from banding, as tiles.
@interface OrvelGrainView : NSView
@end
