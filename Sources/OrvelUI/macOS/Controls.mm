#import "OrvelUI/macOS/Controls.h"

#include <utility>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;

@implementation OrvelActionTarget {
    std::function<void(id)> _call;
}

- (instancetype)initWithCall:(std::function<void(id)>)call {
    if ((self = [super init])) _call = std::move(call);
    return self;
}

- (void)act:(id)sender {
    // A copy, because the handler may replace the control, and with it this target.
    const auto call = _call;
    call(sender);
}

@end

@implementation OrvelActionView {
    NSMutableArray* _targets;
}

- (void)connect:(NSControl*)control to:(std::function<void(id)>)call {
    if (!_targets) _targets = [NSMutableArray array];
    OrvelActionTarget* const target = [[OrvelActionTarget alloc] initWithCall:std::move(call)];
    [_targets addObject:target];
    control.target = target;
    control.action = @selector(act:);
}

- (void)clear {
    for (NSView* view in self.subviews.copy) [view removeFromSuperview];
    // Deferred, because one of them may be the sender of the current action.
    NSMutableArray* const targets = _targets;
    dispatch_async(dispatch_get_main_queue(), ^{
      [targets removeAllObjects];
    });
    _targets = nil;
}

@end

namespace OrvelUI::CocoaControls {

OrvelActionView* stack(bool vertical, double spacing) {
    return [[OrvelActionView alloc] initVertical:vertical spacing:spacing];
}

NSTextField* label(const FormText& text, const FormColors& colors, NSTextAlignment alignment) {
    const LabelContent style = styled(text, colors);
    NSTextField* const field = [[NSTextField alloc] initWithFrame:NSZeroRect];
    field.stringValue = Cocoa::string(text.text);
    field.editable = NO;
    field.bezeled = NO;
    field.drawsBackground = NO;
    [field.cell setWraps:YES];
    field.alignment = alignment;
    field.font = Drawing::font(style.size, style.weight);
    field.textColor = Drawing::color(style.ink);
    field.selectable = NO;
    return field;
}

NSButton* pushButton(const std::string& title) {
    NSButton* const button = [[NSButton alloc] initWithFrame:NSZeroRect];
    [button setButtonType:NSButtonTypeMomentaryPushIn];
    button.bezelStyle = NSBezelStylePush;
    button.title = Cocoa::string(title);
    return button;
}

NSButton* button(const FormButton& content, OrvelActionView* keeper) {
    NSButton* const view = pushButton(content.title);
    switch (content.kind) {
        case FormButton::Kind::prominent:
            view.keyEquivalent = @"\r";
            break;
        case FormButton::Kind::destructive:
            view.hasDestructiveAction = YES;
            break;
        case FormButton::Kind::link:
            view.bordered = NO;
            view.contentTintColor = NSColor.linkColor;
            break;
        case FormButton::Kind::symbol:
            // Without the symbol the title is shown.
            if (NSImage* const symbol =
                    [NSImage imageWithSystemSymbolName:Cocoa::string(content.symbol)
                              accessibilityDescription:Cocoa::string(content.title)]) {
                view.image = symbol;
                view.imagePosition = NSImageOnly;
            }
            view.bordered = NO;
            break;
        case FormButton::Kind::plain:
            break;
    }
    view.enabled = content.enabled;
    view.accessibilityLabel =
        Cocoa::string(content.accessibleName.empty() ? content.title : content.accessibleName);
    view.accessibilityHelp = Cocoa::string(content.hint);
    [keeper connect:view to:[press = content.press](id) { press(); }];
    [view sizeToFit];
    return view;
}

}  // namespace OrvelUI::CocoaControls
