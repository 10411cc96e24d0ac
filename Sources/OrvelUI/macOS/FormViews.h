#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"

/// A view that is drawn by a function of the seconds since it was shown, which are 0 without
/// motion.
@interface OrvelDrawnView : NSView
- (instancetype)initWithSize:(NSSize)size
                       moves:(bool)moves
                     drawing:(std::function<void(NSRect, double seconds)>)drawing;
@end

/// The field for a line of text that the user types.
@interface OrvelTextLine : NSTextField <NSTextFieldDelegate>
- (instancetype)initWithContent:(const OrvelUI::TextField&)content;
@end
