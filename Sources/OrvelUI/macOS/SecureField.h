#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/LockCardModel.h"

/// The field of a card: the system's secure field in the card's frame, with the arrow, the ring or
/// the lock at its right end. Typed text goes into the model, which must outlive the view.
@interface OrvelSecureField : NSView <NSTextFieldDelegate>
- (instancetype)initWithModel:(OrvelUI::LockCardModel*)model
                 cornerRadius:(double)radius
                     onEscape:(std::function<void()>)escape;
- (void)setContent:(const OrvelUI::PasswordFieldContent&)content;
/// Gives the field the focus if it accepts typing.
- (void)takeKeyboard;
@end
