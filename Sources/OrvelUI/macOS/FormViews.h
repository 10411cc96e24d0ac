#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"

/// A view that draws itself by a function.
@interface OrvelDrawnView : NSView
- (instancetype)initWithSize:(NSSize)size drawing:(std::function<void(NSRect)>)drawing;
@end

/// The field of a line of the user's own words.
@interface OrvelTextLine : NSTextField <NSTextFieldDelegate>
- (instancetype)initWithContent:(const OrvelUI::TextField&)content;
@end
