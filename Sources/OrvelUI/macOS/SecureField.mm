#import "OrvelUI/macOS/SecureField.h"

#include <algorithm>
#include <utility>

#include <sodium.h>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;
using OrvelUI::Palette::lockInk;
using Field = OrvelUI::PasswordFieldContent;
using End = Field::End;

namespace {

// In points.
constexpr double textInset = 12;

/// Compares names, since some runtimes have several selectors with the same name.
bool is(SEL command, SEL other) {
    return [NSStringFromSelector(command) isEqualToString:NSStringFromSelector(other)];
}

}  // namespace

@implementation OrvelSecureField {
    OrvelUI::LockCardModel* _model;
    double _radius;
    std::function<void()> _escape;
    Field _content;
    NSSecureTextField* _field;
    /// True while the field's text is being passed to the model.
    BOOL _isTelling;
}

- (instancetype)initWithModel:(OrvelUI::LockCardModel*)model
                 cornerRadius:(double)radius
                     onEscape:(std::function<void()>)escape {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _model = model;
        _radius = radius;
        _escape = std::move(escape);
        _field = [[NSSecureTextField alloc] initWithFrame:NSZeroRect];
        _field.bordered = NO;
        _field.bezeled = NO;
        _field.drawsBackground = NO;
        _field.focusRingType = NSFocusRingTypeNone;
        _field.font = Drawing::font(13, OrvelUI::LabelContent::Weight::regular);
        _field.textColor = Drawing::color({lockInk, OrvelUI::Palette::islandFieldTextOpacity});
        _field.delegate = self;
        _field.hidden = YES;
        [self addSubview:_field];
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (void)setContent:(const Field&)content {
    const auto before = std::exchange(_content, content);
    // The model is emptied after a submission and by Escape.
    const bool empties = !_isTelling && content.bullets == 0 && _field.stringValue.length > 0;
    if (empties) _field.stringValue = @"";
    _field.hidden = !content.canType;
    _field.accessibilityLabel = Cocoa::string(content.accessibleName);
    _field.accessibilityHelp = Cocoa::string(content.accessibleHint);
    // A new text ends the editing, and the field loses the focus with it.
    if (empties || !before.canType) [self takeKeyboard];
    self.needsDisplay = YES;
}

- (void)takeKeyboard {
    if (_content.canType) [self.window makeFirstResponder:_field];
}

- (void)viewDidMoveToWindow {
    [super viewDidMoveToWindow];
    [self takeKeyboard];
}

- (void)layout {
    [super layout];
    const NSSize size = self.bounds.size;
    const double height = _field.cell.cellSize.height;
    _field.frame = NSMakeRect(
        textInset, (size.height - height) / 2,
        std::max(0.0, size.width - textInset - Field::endSide - 2 * Field::endInset), height);
}

- (NSRect)endRect {
    const NSSize size = self.bounds.size;
    return NSMakeRect(size.width - Field::endInset - Field::endSide,
                      (size.height - Field::endSide) / 2, Field::endSide, Field::endSide);
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (void)mouseDown:(NSEvent*)event {
    const NSPoint at = [self convertPoint:event.locationInWindow fromView:nil];
    [self takeKeyboard];
    if (NSPointInRect(at, [self endRect])) _model->submit();
}

- (void)controlTextDidChange:(NSNotification*)notification {
    auto typed = Cocoa::string(_field.stringValue);
    _isTelling = YES;
    _model->deleteAll();
    _model->type(typed);
    _isTelling = NO;
    sodium_memzero(typed.data(), typed.size());
    self.needsDisplay = YES;
}

- (BOOL)control:(NSControl*)control textView:(NSTextView*)view doCommandBySelector:(SEL)command {
    if (is(command, @selector(insertNewline:))) {
        _model->submit();
        return YES;
    }
    if (is(command, @selector(cancelOperation:))) {
        if (_escape)
            _escape();
        else
            _model->deleteAll();
        return YES;
    }
    // No other view accepts typing, so Tab does nothing.
    return is(command, @selector(insertTab:)) || is(command, @selector(insertBacktab:));
}

- (void)drawRect:(NSRect)dirty {
    NSBezierPath* const shape =
        [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(self.bounds, 0.5, 0.5)
                                        xRadius:_radius
                                        yRadius:_radius];
    [Drawing::color(_content.fill) set];
    [shape fill];
    [Drawing::color(_content.border) set];
    [shape stroke];
    if (_content.bullets == 0)
        Drawing::label(
            {.text = _content.placeholder,
             .size = 13,
             .ink = {lockInk, OrvelUI::Palette::islandPlaceholderOpacity}},
            NSMakeRect(textInset + 3, 0,
                       self.bounds.size.width - textInset - Field::endSide - 2 * Field::endInset,
                       self.bounds.size.height));
    [self drawEnd];
}

- (void)drawEnd {
    const NSRect rect = [self endRect];
    const NSPoint centre = NSMakePoint(NSMidX(rect), NSMidY(rect));
    const OrvelUI::Palette::Ink faint{lockInk, OrvelUI::Palette::lockTertiaryOpacity};
    const bool unlocks = _content.bullets > 0;
    switch (_content.end) {
        case End::unlock:
            [Drawing::color({lockInk, unlocks ? 0.95 : 0.1}) set];
            [[NSBezierPath bezierPathWithOvalInRect:rect] fill];
            Drawing::symbol(
                {.name = "arrow.right",
                 .size = 14,
                 .ink = unlocks ? OrvelUI::Palette::Ink{OrvelUI::Palette::island} : faint},
                centre);
            break;
        case End::ring:
            Drawing::ring(centre, 16, 2.5, 0, 1, {lockInk, 0.16});
            Drawing::ring(centre, 16, 2.5, 0, _content.ringFraction,
                          {OrvelUI::Palette::lockDanger});
            break;
        case End::lock:
            Drawing::symbol({.name = "lock.fill", .size = 13, .ink = faint}, centre);
            break;
    }
}

@end
