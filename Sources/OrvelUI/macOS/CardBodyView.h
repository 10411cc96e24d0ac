#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/LockCardModel.h"

/// The part of the island and of an open badge that takes the password. The model must outlive the
/// view.
@interface OrvelCardBodyView : NSView
/// `top` is the space above the first row, in points.
- (instancetype)initWithModel:(OrvelUI::LockCardModel*)model
                          top:(double)top
                  fieldRadius:(double)radius
                     onEscape:(std::function<void()>)escape;
- (void)setContent:(const OrvelUI::CardBodyContent&)content;
- (void)takeKeyboard;
@end
