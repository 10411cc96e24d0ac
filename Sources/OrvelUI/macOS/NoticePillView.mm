#import "OrvelUI/macOS/NoticePillView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "OrvelBlur/Easing.h"
#include "OrvelCore/Match.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/macOS/Animation.h"
#include "OrvelUI/macOS/CocoaDrawing.h"

namespace Drawing = OrvelUI::CocoaDrawing;
using OrvelUI::Keycaps;
using OrvelUI::LabelContent;
using OrvelUI::NotchMetrics;
using OrvelUI::NoticePillContent;

namespace {

constexpr auto pillShadow = NoticePillContent::shadow;
constexpr double reach = pillShadow.radius + pillShadow.drop;

double widthOf(const NoticePillContent::Part& part) {
    return OrvelCore::match(
        part, [](const LabelContent& label) { return Drawing::width(label); },
        [](const Keycaps& keycaps) { return Drawing::width(keycaps); });
}

/// The width of the symbol and the parts.
double rowWidth(const NoticePillContent& content) {
    double width = content.symbol.size;
    for (const auto& part : content.parts) width += NoticePillContent::gap + widthOf(part);
    return width;
}

}  // namespace

@implementation OrvelNoticePillView {
    NoticePillContent _content;
    std::optional<NotchMetrics> _notch;
    std::function<void()> _tap;
    double _width;
    OrvelUI::Animation _fading;
    NSTimer* _wait;
}

- (instancetype)initWithContent:(const NoticePillContent&)content
                          notch:(std::optional<NotchMetrics>)notch
                          onTap:(std::function<void()>)tap {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _content = content;
        _notch = notch;
        _tap = std::move(tap);
        _width = std::max(rowWidth(content) + 2 * NoticePillContent::padding, content.minimumWidth);
        self.accessibilityElement = YES;
        self.accessibilityRole =
            content.isButton ? NSAccessibilityButtonRole : NSAccessibilityStaticTextRole;
        self.accessibilityLabel = OrvelSystem::Cocoa::string(content.accessibleName);
    }
    return self;
}

- (void)dealloc {
    [_wait invalidate];
}

- (BOOL)isFlipped {
    return YES;
}

- (NSRect)placementIn:(NSSize)area {
    const double width = std::min(_width + 2 * reach, area.width);
    const double centre = OrvelUI::IslandLayout::centerX(_notch, area.width);
    return NSMakeRect(std::round(centre - width / 2), 0, width,
                      _content.top + NoticePillContent::rowHeight + reach);
}

- (NSRect)pill {
    const double width = std::min(_width, self.bounds.size.width);
    return NSMakeRect(NSMidX(self.bounds) - width / 2, 0, width,
                      _content.top + NoticePillContent::rowHeight);
}

- (void)fadeOutAfter:(double)after seconds:(double)seconds {
    __weak OrvelNoticePillView* const weak = self;
    _wait = [NSTimer timerWithTimeInterval:after
                                   repeats:NO
                                     block:^(NSTimer*) {
                                       [weak fadeOutWithin:seconds];
                                     }];
    [NSRunLoop.mainRunLoop addTimer:_wait forMode:NSRunLoopCommonModes];
}

- (void)fadeOutWithin:(double)seconds {
    __weak OrvelNoticePillView* const weak = self;
    _fading.start([weak, seconds](double elapsed) {
        const double t = seconds > 0 ? elapsed / seconds : 1;
        weak.alphaValue = 1 - OrvelBlur::Easing::easeOut(t);
        if (t >= 1) weak.hidden = YES;
        return t < 1 && weak != nil;
    });
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (NSView*)hitTest:(NSPoint)point {
    const NSPoint inside = [self convertPoint:point fromView:self.superview];
    return _tap && !self.hidden && NSPointInRect(inside, [self pill]) ? self : nil;
}

- (void)mouseDown:(NSEvent*)event {
    [self accessibilityPerformPress];
}

- (BOOL)accessibilityPerformPress {
    if (!_tap) return NO;
    const auto tap = _tap;
    dispatch_async(dispatch_get_main_queue(), ^{
      tap();
    });
    return YES;
}

- (void)drawRect:(NSRect)dirty {
    const NSRect pill = [self pill];
    [NSGraphicsContext saveGraphicsState];
    Drawing::setShadow(pillShadow);
    [Drawing::color({OrvelUI::Palette::island}) set];
    [Drawing::path(OrvelUI::IslandShape{.bottomRadius = NoticePillContent::rowHeight / 2}.path(
        {pill.origin.x, 0, pill.size.width, pill.size.height})) fill];
    [NSGraphicsContext restoreGraphicsState];
    const NSRect row =
        NSMakeRect(pill.origin.x, _content.top, pill.size.width, NoticePillContent::rowHeight);
    const double end = NSMaxX(row) - NoticePillContent::padding;
    double x =
        std::max(row.origin.x + NoticePillContent::padding, NSMidX(row) - rowWidth(_content) / 2);
    Drawing::symbol(_content.symbol, NSMakePoint(x + _content.symbol.size / 2, NSMidY(row)));
    x += _content.symbol.size;
    for (const auto& part : _content.parts) {
        x += NoticePillContent::gap;
        const double width = std::min(widthOf(part), std::max(0.0, end - x));
        const NSRect rect = NSMakeRect(x, row.origin.y, width, row.size.height);
        OrvelCore::match(
            part, [&](const LabelContent& label) { Drawing::label(label, rect); },
            [&](const Keycaps& keycaps) { Drawing::keycaps(keycaps, keycaps.inks(), rect); });
        x += width;
    }
}

@end

namespace OrvelUI {

std::optional<NotchMetrics> notchOf(NSScreen* screen) {
    if (!screen) return {};
    return NotchMetrics::from(screen.frame.size.width, screen.safeAreaInsets.top,
                              screen.auxiliaryTopLeftArea.size.width,
                              screen.auxiliaryTopRightArea.size.width);
}

}  // namespace OrvelUI
