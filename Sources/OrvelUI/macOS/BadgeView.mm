#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/CardObservation.h"
#include "OrvelUI/Motion.h"
#include "OrvelUI/macOS/Animation.h"
#import "OrvelUI/macOS/CardBodyView.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/LockViews.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;
using Badge = OrvelUI::AppLockBadgeContent;
using OrvelUI::LockCardModel;

namespace {

void inNextTurn(std::function<void()> call) {
    dispatch_async(dispatch_get_main_queue(), ^{
      call();
    });
}

}  // namespace

@interface OrvelBadgeView : NSView <OrvelPlacedView>
- (instancetype)initWithModel:(LockCardModel*)model
                    unlocking:(bool)unlocking
                        onTap:(std::function<void()>)tap
                     onCancel:(std::function<void()>)cancel;
@end

@implementation OrvelBadgeView {
    LockCardModel* _model;
    bool _unlocking;
    std::function<void()> _tap;
    std::function<void()> _cancel;
    Badge _content;
    OrvelCardBodyView* _body;
    std::vector<OrvelCore::Subscription> _observations;
    OrvelUI::Animation _shaking;
    double _shakeOffset;
}

- (instancetype)initWithModel:(LockCardModel*)model
                    unlocking:(bool)unlocking
                        onTap:(std::function<void()>)tap
                     onCancel:(std::function<void()>)cancel {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _model = model;
        _unlocking = unlocking;
        _tap = std::move(tap);
        _cancel = std::move(cancel);
        if (unlocking) {
            _body = [[OrvelCardBodyView alloc]
                initWithModel:model
                          top:Badge::padding
                  fieldRadius:Badge::fieldRadius
                     onEscape:[cancel = _cancel] { inNextTurn(cancel); }];
            [self addSubview:_body];
        }
        __weak OrvelBadgeView* const weak = self;
        _observations = OrvelUI::observeCard(*model, [weak] { [weak refresh]; });
        _observations.push_back(
            model->shakeCount.observe([weak, last = model->shakeCount.get()](double count) mutable {
                if (count > last) [weak shake];
                last = count;
            }));
        self.accessibilityElement = YES;
        self.accessibilityRole = unlocking ? NSAccessibilityGroupRole : NSAccessibilityButtonRole;
        [self refresh];
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (NSRect)placementIn:(NSSize)area {
    return NSMakeRect(0, 0, area.width, area.height);
}

- (void)refresh {
    _content = Badge::of(*_model, _unlocking);
    self.accessibilityLabel = Cocoa::string(_content.accessibleName);
    self.accessibilityHelp = Cocoa::string(_content.accessibleHint);
    if (_content.body) [_body setContent:*_content.body];
    self.needsDisplay = YES;
}

- (void)shake {
    if (OrvelSystem::Appearance::reducesMotion() || !_unlocking || !self.window) return;
    __weak OrvelBadgeView* const weak = self;
    _shaking.start([weak](double seconds) {
        const auto offset = OrvelUI::ShakeEffect::after(seconds);
        [weak setShakeOffset:offset.value_or(0)];
        return offset.has_value() && weak != nil;
    });
}

- (void)setShakeOffset:(double)offset {
    _shakeOffset = offset;
    self.needsLayout = YES;
    self.needsDisplay = YES;
}

- (NSRect)cardRect {
    return NSMakeRect(NSMidX(self.bounds) - _content.size.width / 2 + _shakeOffset,
                      NSMidY(self.bounds) - _content.size.height / 2, _content.size.width,
                      _content.size.height);
}

- (void)layout {
    [super layout];
    _body.frame = NSInsetRect([self cardRect], Badge::padding, 0);
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (void)mouseDown:(NSEvent*)event {
    const NSPoint at = [self convertPoint:event.locationInWindow fromView:nil];
    if (!NSPointInRect(at, [self cardRect])) return [super mouseDown:event];
    [_body takeKeyboard];
    if (!_unlocking) inNextTurn(_tap);
}

- (BOOL)accessibilityPerformPress {
    if (!_unlocking) inNextTurn(_tap);
    return !_unlocking;
}

- (void)drawRect:(NSRect)dirty {
    const NSRect card = [self cardRect];
    NSBezierPath* const shape = [NSBezierPath bezierPathWithRoundedRect:card
                                                                xRadius:Badge::cornerRadius
                                                                yRadius:Badge::cornerRadius];
    [NSGraphicsContext saveGraphicsState];
    Drawing::setShadow({_content.shadowOpacity, _content.shadowRadius, Badge::shadowDrop});
    [Drawing::color({OrvelUI::Palette::lockCard}) set];
    [shape fill];
    [NSGraphicsContext restoreGraphicsState];
    if (_body) return;
    const double y = NSMidY(card);
    const double icon = _content.icon.size;
    Drawing::avatar(_content.icon,
                    NSMakeRect(card.origin.x + Badge::compactPadding, y - icon / 2, icon, icon));
    const double left = card.origin.x + Badge::compactPadding + icon + Badge::compactPadding;
    const double right = NSMaxX(card) - Badge::compactPadding - _content.mark.size;
    Drawing::label(
        _content.title,
        NSMakeRect(left, card.origin.y, right - left - Badge::compactPadding, card.size.height));
    Drawing::symbol(_content.mark, NSMakePoint(right + _content.mark.size / 2, y));
}

@end

namespace OrvelUI {

NSView<OrvelPlacedView>* makeAppLockBadge(LockCardModel& model, bool unlocking,
                                          std::function<void()> onTap,
                                          std::function<void()> onCancel) {
    return [[OrvelBadgeView alloc] initWithModel:&model
                                       unlocking:unlocking
                                           onTap:std::move(onTap)
                                        onCancel:std::move(onCancel)];
}

}  // namespace OrvelUI
