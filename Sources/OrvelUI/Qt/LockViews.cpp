#include "OrvelUI/Qt/LockViews.h"

#include <cmath>
#include <utility>

#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/Qt/AppLockBadgeWidget.h"
#include "OrvelUI/Qt/CardAccessibility.h"
#include "OrvelUI/Qt/LockIslandWidget.h"
#include "OrvelUI/Qt/SecondaryDisplayPillWidget.h"

namespace OrvelUI {

OverlayView::OverlayView() {
    installCardAccessibility();
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_NoSystemBackground);
    setWindowFlags(Qt::FramelessWindowHint);
}

QRect OverlayView::hanging(const std::optional<NotchMetrics>& notch, const QSize& area) const {
    const QSize size = sizeHint();
    const double centre = IslandLayout::centerX(notch, area.width());
    return {QPoint(static_cast<int>(std::lround(centre - size.width() / 2.0)), 0), size};
}

std::unique_ptr<OverlayView> makeLockScreenContent(LockCardModel& model,
                                                   std::optional<NotchMetrics> notch,
                                                   bool reduceMotion, bool increasedContrast) {
    return std::make_unique<LockIslandWidget>(model, notch, reduceMotion, increasedContrast);
}

std::unique_ptr<OverlayView> makeSecondaryDisplayPill(LockCardModel& model,
                                                      std::optional<NotchMetrics> notch) {
    return std::make_unique<SecondaryDisplayPillWidget>(model, notch);
}

std::unique_ptr<OverlayView> makeAppLockBadge(LockCardModel& model, bool unlocking,
                                              bool reduceMotion, std::function<void()> onTap,
                                              std::function<void()> onCancel) {
    return std::make_unique<AppLockBadgeWidget>(model, unlocking, reduceMotion, std::move(onTap),
                                                std::move(onCancel));
}

}  // namespace OrvelUI
