#import "OrvelUI/macOS/MenuPanelRowView.h"

#include <algorithm>
#include <utility>

#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/MenuPanelButtonView.h"

namespace Drawing = OrvelUI::CocoaDrawing;
using Kind = OrvelUI::MenuPanelRow::Kind;
using Role = OrvelUI::MenuPanelControl::Role;
using OrvelUI::MenuPanelAction;
using Row = OrvelUI::MenuPanelRow;
using OrvelUI::Palette::lockInk;

namespace {

constexpr double prominentInset = Row::inset + 4;  // points

}  // namespace

@implementation OrvelMenuPanelRowView {
    Row _content;
    std::function<void(const MenuPanelAction&)> _perform;
    BOOL _isHovered;
}

- (instancetype)initWithContent:(const Row&)content
                        perform:(std::function<void(const MenuPanelAction&)>)perform {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _content = content;
        _perform = std::move(perform);
        for (const auto& button : content.buttons)
            [self addSubview:[[OrvelMenuPanelButtonView alloc] initWithContent:button
                                                                       perform:_perform]];
        if (content.control) OrvelUI::describe(self, *content.control);
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (BOOL)acceptsFirstResponder {
    return _content.control && _content.control->enabled;
}

- (void)updateTrackingAreas {
    [super updateTrackingAreas];
    for (NSTrackingArea* area in self.trackingAreas) [self removeTrackingArea:area];
    [self addTrackingArea:[[NSTrackingArea alloc]
                              initWithRect:self.bounds
                                   options:NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways
                                     owner:self
                                  userInfo:nil]];
}

- (void)mouseEntered:(NSEvent*)event {
    _isHovered = YES;
    self.needsDisplay = YES;
}

- (void)mouseExited:(NSEvent*)event {
    _isHovered = NO;
    self.needsDisplay = YES;
}

- (void)mouseDown:(NSEvent*)event {
    [self accessibilityPerformPress];
}

- (void)keyDown:(NSEvent*)event {
    NSString* const key = event.charactersIgnoringModifiers;
    if ([key isEqualToString:@" "] || [key isEqualToString:@"\r"])
        [self accessibilityPerformPress];
    else
        [super keyDown:event];
}

- (BOOL)accessibilityPerformPress {
    if (!_content.control || !_content.control->enabled) return NO;
    const auto perform = _perform;
    const auto action = _content.control->action;
    perform(action);
    return YES;
}

- (void)layout {
    [super layout];
    const double width = self.bounds.size.width;
    double right = width - Row::inset - Row::padding;
    const bool isFooter = _content.kind == Kind::footer;
    NSArray* const buttons = self.subviews;
    for (NSUInteger i = buttons.count; i-- > 0;) {
        NSView* const button = buttons[i];
        const NSSize size = button.intrinsicContentSize;
        // In the footer, the first button is at the start of the row.
        const double left = isFooter && i == 0 ? Row::inset : right - size.width;
        button.frame =
            NSMakeRect(left, (self.bounds.size.height - size.height) / 2, size.width, size.height);
        right = left - Row::gap / 2;
    }
}

/// The right limit of the texts.
- (double)textEnd {
    double end = self.bounds.size.width - Row::inset - Row::padding;
    if (_content.control && _content.control->role == Role::toggle)
        end -= OrvelUI::IslandSwitch::width + Row::gap;
    if (_content.mark) end -= _content.mark->size + Row::gap;
    if (_content.keycaps) end -= Drawing::width(*_content.keycaps) + Row::gap;
    for (NSView* button in self.subviews) end = std::min(end, button.frame.origin.x - Row::gap / 2);
    return end;
}

- (void)drawSwitch {
    using OrvelUI::IslandSwitch;
    const bool on = _content.control->on;
    const NSRect track =
        NSMakeRect(self.bounds.size.width - Row::inset - Row::padding - IslandSwitch::width,
                   (self.bounds.size.height - IslandSwitch::height) / 2, IslandSwitch::width,
                   IslandSwitch::height);
    [Drawing::color(on ? OrvelUI::Palette::Ink{OrvelUI::Palette::accentDark}
                       : OrvelUI::Palette::Ink{lockInk, 0.2}) set];
    [[NSBezierPath bezierPathWithRoundedRect:track
                                     xRadius:IslandSwitch::height / 2
                                     yRadius:IslandSwitch::height / 2] fill];
    const double side = IslandSwitch::height - 2 * IslandSwitch::knobInset;
    const double left = on ? NSMaxX(track) - IslandSwitch::knobInset - side
                           : track.origin.x + IslandSwitch::knobInset;
    [Drawing::color({lockInk}) set];
    [[NSBezierPath
        bezierPathWithOvalInRect:NSMakeRect(left, track.origin.y + IslandSwitch::knobInset, side,
                                            side)] fill];
}

- (void)drawRect:(NSRect)dirty {
    const NSRect row = self.bounds;
    if (_content.kind == Kind::separator) {
        [Drawing::color({lockInk, 0.12}) set];
        [[NSBezierPath
            bezierPathWithRect:NSMakeRect(Row::inset + Row::padding, NSMidY(row) - 0.25,
                                          row.size.width - 2 * (Row::inset + Row::padding), 0.5)]
            fill];
        return;
    }
    const bool isProminent = _content.kind == Kind::prominent;
    const auto fill = [&](const OrvelUI::Palette::Ink& ink) {
        const NSRect box = isProminent
                               ? NSMakeRect(prominentInset, 3, row.size.width - 2 * prominentInset,
                                            row.size.height - 8)
                               : NSInsetRect(row, Row::inset, 0);
        const double radius = isProminent ? 11 : Row::cornerRadius;
        [Drawing::color(ink) set];
        [[NSBezierPath bezierPathWithRoundedRect:box xRadius:radius yRadius:radius] fill];
    };
    if (isProminent) fill({OrvelUI::Palette::accentDark});
    if (_content.control && _content.control->enabled && _isHovered) fill({lockInk, 0.1});
    double left = Row::inset + Row::padding;
    if (_content.symbol) {
        const NSRect field =
            NSMakeRect(left, NSMidY(row) - Row::fieldSide / 2, Row::fieldSide, Row::fieldSide);
        [Drawing::color(_content.field) set];
        [[NSBezierPath bezierPathWithOvalInRect:field] fill];
        Drawing::symbol(*_content.symbol, NSMakePoint(NSMidX(field), NSMidY(field)));
        left += Row::fieldSide + Row::gap;
    } else if (_content.icon) {
        const double side = _content.icon->size;
        Drawing::avatar(*_content.icon, NSMakeRect(left, NSMidY(row) - side / 2, side, side));
        left += side + Row::gap;
    }
    const double end = [self textEnd];
    const bool hasSubtitle = !_content.subtitle.text.empty();
    const double height = Row::titleLine + (hasSubtitle ? Row::subtitleLine : 0);
    const double top = NSMidY(row) - height / 2;
    Drawing::label(_content.title, NSMakeRect(left, top, end - left, Row::titleLine));
    if (hasSubtitle)
        Drawing::label(_content.subtitle,
                       NSMakeRect(left, top + Row::titleLine, end - left, Row::subtitleLine));
    if (_content.keycaps)
        Drawing::keycaps(*_content.keycaps, _content.keycaps->inks(),
                         NSMakeRect(end + Row::gap, row.origin.y, 0, row.size.height));
    if (_content.mark)
        Drawing::symbol(*_content.mark, NSMakePoint(row.size.width - Row::inset - Row::padding -
                                                        _content.mark->size / 2,
                                                    NSMidY(row)));
    if (_content.control && _content.control->role == Role::toggle) [self drawSwitch];
}

@end
