#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"

/// A view that is drawn by a function.
@interface OrvelDrawnView : NSView
- (instancetype)initWithSize:(NSSize)size drawing:(std::function<void(NSRect)>)drawing;
@end

/// The field for a line of text that the user types.
@interface OrvelTextLine : NSTextField <NSTextFieldDelegate>
- (instancetype)initWithContent:(const OrvelUI::TextField&)content;
@end
