#import "OrvelUI/macOS/StackView.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "OrvelUI/macOS/CocoaDrawing.h"

namespace Drawing = OrvelUI::CocoaDrawing;

namespace {

constexpr double cornerRadius = 10;  // points

bool isText(NSView* view) {
    return [view isKindOfClass:[NSTextField class]] && !static_cast<NSTextField*>(view).isEditable;
}

NSSize sizeOf(NSView* view, double width) {
    if ([view isKindOfClass:[OrvelStackView class]])
        return [static_cast<OrvelStackView*>(view) sizeForWidth:width];
    if (!isText(view)) return view.frame.size;
    constexpr double unlimited = 10000;
    const NSSize size =
        [static_cast<NSTextField*>(view).cell cellSizeForBounds:NSMakeRect(0, 0, width, unlimited)];
    return NSMakeSize(std::min(width, std::ceil(size.width)), std::ceil(size.height));
}

}  // namespace

@implementation OrvelStackView {
    BOOL _isVertical;
    double _spacing;
    NSView* _growing;
}

- (instancetype)initVertical:(BOOL)vertical spacing:(double)spacing {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _isVertical = vertical;
        _spacing = spacing;
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (void)add:(NSView*)view {
    [self addSubview:view];
}

- (void)addGrowing:(NSView*)view {
    _growing = view;
    [self addSubview:view];
}

/// The size of each view if the stack is `width` wide.
- (std::vector<NSSize>)sizesForWidth:(double)width {
    const double most = _maximumWidth > 0 ? std::min(width, _maximumWidth) : width;
    const double room = std::max(0.0, most - _insets.left - _insets.right);
    std::vector<NSSize> sizes;
    double used = _isVertical ? 0 : -_spacing;
    for (NSView* view in self.subviews) {
        sizes.push_back(view == _growing ? NSZeroSize : sizeOf(view, room));
        if (!_isVertical) used += sizes.back().width + _spacing;
    }
    for (std::size_t i = 0; i < sizes.size(); ++i)
        if (NSView* const view = self.subviews[i]; view == _growing)
            sizes[i] = sizeOf(view, std::max(0.0, room - used));
    return sizes;
}

- (NSSize)sizeForWidth:(double)width {
    double along = -_spacing;
    double across = 0;
    for (const NSSize& size : [self sizesForWidth:width]) {
        along += (_isVertical ? size.height : size.width) + _spacing;
        across = std::max(across, _isVertical ? size.width : size.height);
    }
    along = std::max(0.0, along);
    return NSMakeSize((_isVertical ? across : along) + _insets.left + _insets.right,
                      (_isVertical ? along : across) + _insets.top + _insets.bottom);
}

- (void)place {
    const NSSize own = self.bounds.size;
    const double room = std::max(0.0, own.width - _insets.left - _insets.right);
    const auto sizes = [self sizesForWidth:own.width];
    double used = -_spacing;
    for (const NSSize& size : sizes) used += size.width + _spacing;
    double x = _insets.left;
    double y = _insets.top;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        NSView* const view = self.subviews[i];
        NSSize size = sizes[i];
        double left = x;
        double top = y;
        if (_isVertical) {
            if (_centred)
                left += (room - size.width) / 2;
            else if (size.width <= room && [view isKindOfClass:[OrvelStackView class]])
                size.width = room;
            y += size.height + _spacing;
        } else {
            if (view == _growing) size.width = std::max(0.0, room - (used - size.width));
            top += (own.height - _insets.top - _insets.bottom - size.height) / 2;
            x += size.width + _spacing;
        }
        view.frame = NSMakeRect(std::round(left), std::round(top), size.width, size.height);
        if ([view isKindOfClass:[OrvelStackView class]]) [static_cast<OrvelStackView*>(view) place];
    }
}

- (void)resizeSubviewsWithOldSize:(NSSize)size {
    [super resizeSubviewsWithOldSize:size];
    [self place];
}

- (void)drawRect:(NSRect)dirty {
    if (!_fill) return;
    NSBezierPath* const surface =
        [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(self.bounds, 0.5, 0.5)
                                        xRadius:cornerRadius
                                        yRadius:cornerRadius];
    [Drawing::color(*_fill) set];
    [surface fill];
    [Drawing::color(_border) set];
    [surface stroke];
}

@end
