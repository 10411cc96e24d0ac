#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/CardObservation.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/Motion.h"
#include "OrvelUI/macOS/Animation.h"
#import "OrvelUI/macOS/CardBodyView.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/LockViews.h"

namespace Appearance = OrvelSystem::Appearance;
namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;
namespace Layout = OrvelUI::IslandLayout;
using OrvelUI::LockCardModel;
using OrvelUI::LockIslandContent;
using OrvelUI::NotchMetrics;

namespace {

// In points.
constexpr double overhang =
    Layout::shadow.radius + Layout::shadow.drop + OrvelUI::ShakeEffect::reach;

}  // namespace

@interface OrvelLockIslandView : NSView <OrvelPlacedView>
- (instancetype)initWithModel:(LockCardModel*)model notch:(std::optional<NotchMetrics>)notch;
@end

@implementation OrvelLockIslandView {
    LockCardModel* _model;
    std::optional<NotchMetrics> _notch;
    LockIslandContent _content;
    OrvelCardBodyView* _body;
    std::vector<OrvelCore::Subscription> _observations;
    OrvelUI::Animation _opening;
    OrvelUI::Animation _shaking;
    double _progress;
    double _shakeOffset;
}

- (instancetype)initWithModel:(LockCardModel*)model notch:(std::optional<NotchMetrics>)notch {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _model = model;
        _notch = notch;
        _body = [[OrvelCardBodyView alloc] initWithModel:model
                                                     top:Layout::bodyTop
                                             fieldRadius:Layout::fieldRadius
                                                onEscape:{}];
        [self addSubview:_body];
        __weak OrvelLockIslandView* const weak = self;
        _observations = OrvelUI::observeCard(*model, [weak] { [weak refresh]; });
        _observations.push_back(
            model->shakeCount.observe([weak, last = model->shakeCount.get()](double count) mutable {
                if (count > last) [weak shake];
                last = count;
            }));
        self.accessibilityElement = YES;
        self.accessibilityRole = NSAccessibilityGroupRole;
        [self refresh];
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (NSRect)placementIn:(NSSize)area {
    const double width = _content.openSize.width + 2 * overhang;
    const double centre = Layout::centerX(_notch, area.width);
    return NSMakeRect(std::round(centre - width / 2), 0, width,
                      _content.openSize.height + overhang);
}

- (void)refresh {
    _content = LockIslandContent::of(*_model, _notch, Appearance::increasesContrast());
    self.accessibilityLabel = Cocoa::string(_content.accessibleName);
    self.accessibilityHelp = Cocoa::string(_content.accessibleDescription);
    [_body setContent:_content.body];
    self.needsDisplay = YES;
}

- (void)viewDidMoveToWindow {
    [super viewDidMoveToWindow];
    if (self.window && _progress == 0) [self open];
}

- (BOOL)isStill {
    return Appearance::reducesMotion() || _model->staticPreview.get();
}

- (void)open {
    if ([self isStill]) return [self setProgress:1];
    __weak OrvelLockIslandView* const weak = self;
    _opening.start([weak](double seconds) {
        constexpr OrvelUI::Spring spring;
        const bool settled = seconds >= spring.settlingTime();
        [weak setProgress:settled ? 1 : spring.value(seconds)];
        return !settled && weak != nil;
    });
}

- (void)setProgress:(double)progress {
    _progress = progress;
    _body.alphaValue = Layout::bodyOpacity(progress);
    [self moved];
}

- (void)moved {
    self.needsLayout = YES;
    self.needsDisplay = YES;
}

- (void)shake {
    if ([self isStill] || !self.window) return;
    __weak OrvelLockIslandView* const weak = self;
    _shaking.start([weak](double seconds) {
        const auto offset = OrvelUI::ShakeEffect::after(seconds);
        [weak setShakeOffset:offset.value_or(0)];
        return offset.has_value() && weak != nil;
    });
}

- (void)setShakeOffset:(double)offset {
    _shakeOffset = offset;
    [self moved];
}

- (NSRect)islandRect {
    const auto size = Layout::size(_notch, _progress);
    return NSMakeRect(NSMidX(self.bounds) + _shakeOffset - size.width / 2, 0, size.width,
                      size.height);
}

- (void)layout {
    [super layout];
    const NSRect island = [self islandRect];
    _body.frame = NSMakeRect(island.origin.x + Layout::contentPadding, _content.bandHeight,
                             std::max(0.0, island.size.width - 2 * Layout::contentPadding),
                             std::max(0.0, island.size.height - _content.bandHeight));
}

- (NSView*)hitTest:(NSPoint)point {
    // A click on the shadow goes to what is behind it.
    const NSPoint inside = [self convertPoint:point fromView:self.superview];
    return NSPointInRect(inside, [self islandRect]) ? [super hitTest:point] : nil;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (void)mouseDown:(NSEvent*)event {
    [_body takeKeyboard];
}

- (void)drawRect:(NSRect)dirty {
    const NSRect island = [self islandRect];
    NSBezierPath* const shape = Drawing::path(OrvelUI::IslandShape{}.path(
        {island.origin.x, island.origin.y, island.size.width, island.size.height}));
    [NSGraphicsContext saveGraphicsState];
    Drawing::setShadow(Layout::shadow);
    [Drawing::color({OrvelUI::Palette::island}) set];
    [shape fill];
    [NSGraphicsContext restoreGraphicsState];
    // A line inside the edge, which separates the island from a dark backdrop.
    [NSGraphicsContext saveGraphicsState];
    [shape addClip];
    [Drawing::color({OrvelUI::Palette::lockInk, 0.14}) set];
    shape.lineWidth = 2;
    [shape stroke];
    [NSGraphicsContext restoreGraphicsState];
    if (Layout::bandOpacity(_progress) <= 0) return;
    const double band = _content.bandHeight;
    if (!_content.clock.text.empty())
        Drawing::label(_content.clock, NSMakeRect(island.origin.x + Layout::bandPadding, 0,
                                                  _content.earWidth - Layout::bandPadding, band));
    Drawing::symbol(
        _content.mark,
        NSMakePoint(NSMaxX(island) - Layout::bandPadding - _content.mark.size / 2, band / 2));
}

@end

namespace OrvelUI {

NSView<OrvelPlacedView>* makeLockScreenContent(LockCardModel& model,
                                               std::optional<NotchMetrics> notch) {
    return [[OrvelLockIslandView alloc] initWithModel:&model notch:notch];
}

}  // namespace OrvelUI
