#import "OrvelUI/macOS/MenuPanelButtonView.h"

#include <utility>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"

namespace Drawing = OrvelUI::CocoaDrawing;
using OrvelUI::MenuPanelAction;
using OrvelUI::MenuPanelButton;

@implementation OrvelMenuPanelButtonView {
    MenuPanelButton _content;
    std::function<void(const MenuPanelAction&)> _perform;
}

- (instancetype)initWithContent:(const MenuPanelButton&)content
                        perform:(std::function<void(const MenuPanelAction&)>)perform {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _content = content;
        _perform = std::move(perform);
        OrvelUI::describe(self, content.control);
    }
    return self;
}

- (NSSize)intrinsicContentSize {
    const double text = Drawing::width(_content.label);
    return NSMakeSize(
        _content.label.text.empty() ? MenuPanelButton::height : text + 2 * MenuPanelButton::padding,
        MenuPanelButton::height);
}

- (BOOL)isFlipped {
    return YES;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (BOOL)canBecomeKeyView {
    return self.isEnabled;
}

- (void)mouseDown:(NSEvent*)event {
    [self accessibilityPerformPress];
}

- (BOOL)accessibilityPerformPress {
    if (!self.isEnabled) return NO;
    const auto perform = _perform;
    const auto action = _content.control.action;
    perform(action);
    return YES;
}

- (void)drawRect:(NSRect)dirty {
    const NSRect rect = self.bounds;
    if (!_content.label.text.empty()) {
        [Drawing::color({OrvelUI::Palette::lockInk, 0.1}) set];
        [[NSBezierPath bezierPathWithRoundedRect:rect
                                         xRadius:MenuPanelButton::cornerRadius
                                         yRadius:MenuPanelButton::cornerRadius] fill];
        Drawing::label(_content.label, rect, NSTextAlignmentCenter);
        return;
    }
    [NSGraphicsContext saveGraphicsState];
    NSAffineTransform* const transform = [NSAffineTransform transform];
    [transform translateXBy:NSMidX(rect) yBy:NSMidY(rect)];
    [transform rotateByDegrees:_content.turn];
    [transform concat];
    Drawing::symbol(_content.symbol, NSMakePoint(0, 0));
    [NSGraphicsContext restoreGraphicsState];
}

@end

namespace OrvelUI {

void describe(NSControl* view, const MenuPanelControl& control) {
    view.enabled = control.enabled;
    view.accessibilityElement = YES;
    view.accessibilityLabel = OrvelSystem::Cocoa::string(control.name);
    view.accessibilityHelp = OrvelSystem::Cocoa::string(control.hint);
    const bool isButton = control.role == MenuPanelControl::Role::button;
    view.accessibilityRole = isButton ? NSAccessibilityButtonRole : NSAccessibilityCheckBoxRole;
    if (!isButton) view.accessibilityValue = @(control.on);
}

}  // namespace OrvelUI
