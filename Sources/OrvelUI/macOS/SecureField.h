#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/LockCardModel.h"

/// The field of a card: the system's own secure field in the card's frame, with the arrow, the ring
/// or the lock at its right end. What is typed goes into the model, which outlives the view.
@interface OrvelSecureField : NSView <NSTextFieldDelegate>
- (instancetype)initWithModel:(OrvelUI::LockCardModel*)model
                 cornerRadius:(double)radius
                     onEscape:(std::function<void()>)escape;
- (void)setContent:(const OrvelUI::PasswordFieldContent&)content;
/// Gives the field the keyboard while it takes typing.
- (void)takeKeyboard;
@end
