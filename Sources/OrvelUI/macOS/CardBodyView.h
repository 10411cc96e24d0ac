#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/LockCardModel.h"

/// What takes the password, in the island and in an open badge. The model outlives the view.
@interface OrvelCardBodyView : NSView
/// `top` is the room above the first row, in points.
- (instancetype)initWithModel:(OrvelUI::LockCardModel*)model
                          top:(double)top
                  fieldRadius:(double)radius
                     onEscape:(std::function<void()>)escape;
- (void)setContent:(const OrvelUI::CardBodyContent&)content;
- (void)takeKeyboard;
@end
