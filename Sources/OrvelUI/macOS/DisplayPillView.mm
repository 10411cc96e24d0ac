#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/CardObservation.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/NoticePill.h"
#import "OrvelUI/macOS/CardBodyView.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/LockViews.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;
namespace Layout = OrvelUI::IslandLayout;
using OrvelUI::LockCardModel;
using OrvelUI::NotchMetrics;
using OrvelUI::SecondaryDisplayPillContent;

namespace {

constexpr auto pillShadow = OrvelUI::NoticePillContent::shadow;
constexpr double pillReach = pillShadow.radius + pillShadow.drop;

}  // namespace

@interface OrvelDisplayPillView : NSView <OrvelPlacedView>
- (instancetype)initWithModel:(LockCardModel*)model notch:(std::optional<NotchMetrics>)notch;
@end

@implementation OrvelDisplayPillView {
    LockCardModel* _model;
    std::optional<NotchMetrics> _notch;
    SecondaryDisplayPillContent _content;
    std::vector<OrvelCore::Subscription> _observations;
}

- (instancetype)initWithModel:(LockCardModel*)model notch:(std::optional<NotchMetrics>)notch {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _model = model;
        _notch = notch;
        __weak OrvelDisplayPillView* const weak = self;
        _observations = OrvelUI::observeCard(*model, [weak] { [weak refresh]; });
        self.accessibilityElement = YES;
        self.accessibilityRole = NSAccessibilityStaticTextRole;
        [self refresh];
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (NSView*)hitTest:(NSPoint)point {
    return nil;
}

- (NSRect)placementIn:(NSSize)area {
    const double width = _content.size.width + 2 * pillReach;
    const double centre = Layout::centerX(_notch, area.width);
    return NSMakeRect(std::round(centre - width / 2), 0, width, _content.size.height + pillReach);
}

- (void)refresh {
    auto content = SecondaryDisplayPillContent::of(*_model, _notch);
    if (content == _content) return;
    _content = std::move(content);
    self.accessibilityLabel = Cocoa::string(_content.accessibleName);
    self.needsDisplay = YES;
}

- (void)drawRect:(NSRect)dirty {
    const double middle = NSMidX(self.bounds);
    const double left = middle - _content.size.width / 2;
    const double height = _content.size.height;
    const double y = height / 2;
    [NSGraphicsContext saveGraphicsState];
    Drawing::setShadow(pillShadow);
    [Drawing::color({OrvelUI::Palette::island}) set];
    [Drawing::path(OrvelUI::IslandShape{.bottomRadius = height / 2}.path(
        {left, 0, _content.size.width, height})) fill];
    [NSGraphicsContext restoreGraphicsState];
    const double text = Drawing::width(_content.label);
    const double symbol = _content.symbol ? _content.symbol->size : 0;
    constexpr double gap = SecondaryDisplayPillContent::symbolGap;
    // On opposite sides of the notch, or side by side in the middle.
    const bool isSplit = _content.gap > 0;
    const double row = text + (_content.symbol ? symbol + gap : 0);
    const double textLeft = isSplit ? left + Layout::bandPadding : middle + row / 2 - text;
    const double symbolLeft =
        isSplit ? left + _content.size.width - Layout::bandPadding - symbol : middle - row / 2;
    Drawing::label(_content.label, NSMakeRect(textLeft, 0, text, height));
    if (_content.symbol) Drawing::symbol(*_content.symbol, NSMakePoint(symbolLeft + symbol / 2, y));
}

@end

namespace OrvelUI {

NSView<OrvelPlacedView>* makeSecondaryDisplayPill(LockCardModel& model,
                                                  std::optional<NotchMetrics> notch) {
    return [[OrvelDisplayPillView alloc] initWithModel:&model notch:notch];
}

}  // namespace OrvelUI
