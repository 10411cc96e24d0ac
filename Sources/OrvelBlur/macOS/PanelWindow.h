#pragma once

#import <AppKit/AppKit.h>

#include "OrvelBlur/OverlayPanel.h"

/// The window of an overlay panel. `owner` must outlive it, or be set to null first.
@interface OrvelPanel : NSPanel
@property(nonatomic) OrvelBlur::OverlayPanel* owner;
@end

/// The panel's content view, with its origin at the top left.
@interface OrvelPanelRoot : NSView
@property(nonatomic) OrvelBlur::OverlayPanel* owner;
@end

/// Tiled noise that prevents banding in a blurred gradient.
@interface OrvelGrainView : NSView
@end
