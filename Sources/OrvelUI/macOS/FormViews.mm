#import "OrvelUI/macOS/FormViews.h"

#include <utility>

#include "OrvelSystem/macOS/Cocoa.h"

namespace Cocoa = OrvelSystem::Cocoa;

@implementation OrvelDrawnView {
    NSSize _size;
    std::function<void(NSRect)> _drawing;
}

- (instancetype)initWithSize:(NSSize)size drawing:(std::function<void(NSRect)>)drawing {
    if ((self = [super initWithFrame:NSMakeRect(0, 0, size.width, size.height)])) {
        _size = size;
        _drawing = std::move(drawing);
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (NSSize)intrinsicContentSize {
    return _size;
}

- (void)drawRect:(NSRect)dirty {
    _drawing(self.bounds);
}

@end

@implementation OrvelTextLine {
    OrvelUI::TextField _content;
}

- (instancetype)initWithContent:(const OrvelUI::TextField&)content {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _content = content;
        self.stringValue = Cocoa::string(content.text);
        self.placeholderString = Cocoa::string(content.prompt);
        self.accessibilityHelp = Cocoa::string(content.hint);
        self.delegate = self;
    }
    return self;
}

- (void)controlTextDidChange:(NSNotification*)notification {
    const auto typed = Cocoa::string(self.stringValue);
    const auto kept = _content.type ? _content.type(typed) : typed;
    if (kept != typed) self.stringValue = Cocoa::string(kept);
}

- (void)controlTextDidEndEditing:(NSNotification*)notification {
    _content.finish();
}

@end
