#import "OrvelUI/macOS/FormViews.h"

#include <utility>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/Animation.h"

namespace Cocoa = OrvelSystem::Cocoa;

@implementation OrvelDrawnView {
    bool _moves;
    std::function<void(NSRect, double)> _drawing;
    OrvelUI::Animation _animation;
    double _seconds;
}

- (instancetype)initWithSize:(NSSize)size
                       moves:(bool)moves
                     drawing:(std::function<void(NSRect, double)>)drawing {
    if ((self = [super initWithFrame:NSMakeRect(0, 0, size.width, size.height)])) {
        _moves = moves;
        _drawing = std::move(drawing);
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (void)viewDidMoveToWindow {
    [super viewDidMoveToWindow];
    _animation.stop();
    if (!_moves || !self.window) return;
    __weak OrvelDrawnView* const weak = self;
    _animation.start([weak](double seconds) {
        OrvelDrawnView* const view = weak;
        if (!view) return false;
        view->_seconds = seconds;
        view.needsDisplay = YES;
        return true;
    });
}

- (void)drawRect:(NSRect)dirty {
    _drawing(self.bounds, _seconds);
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
