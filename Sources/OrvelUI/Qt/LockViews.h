#pragma once

#include <QMargins>
#include <QRect>
#include <QSize>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "OrvelUI/LockCardModel.h"
#include "OrvelUI/NotchMetrics.h"

namespace OrvelUI {

/// A translucent widget that stands on top of a cover, as large as its `sizeHint`. It observes its
/// model, which must outlive it, and runs no timer while nothing moves.
class OverlayView : public QWidget {
  public:
    OverlayView();

    /// Room around the card itself that its shadow and its shake need, within the widget.
    virtual QMargins overhang() const = 0;
    /// Where the widget stands in an area of that size, such as a display, from its top left.
    virtual QRect placement(const QSize& area) const = 0;
};

/// The card of the whole-Mac lock: hangs from the top of the area, under the notch if there is
/// one, takes the password, and opens when it is first shown.
std::unique_ptr<OverlayView> makeLockScreenContent(LockCardModel& model,
                                                   std::optional<NotchMetrics> notch,
                                                   bool reduceMotion,
                                                   bool increasedContrast = false);

/// What every other display of a locked computer shows.
std::unique_ptr<OverlayView> makeSecondaryDisplayPill(LockCardModel& model,
                                                      std::optional<NotchMetrics> notch);

/// The badge of a locked app, whose name and icon are the model's; stands in the middle of the
/// area. `onTap` is called for a click on the closed badge, `onCancel` for Escape in the open one,
/// both in a later turn of the loop, so they may destroy it.
std::unique_ptr<OverlayView> makeAppLockBadge(LockCardModel& model, bool unlocking,
                                              bool reduceMotion, std::function<void()> onTap,
                                              std::function<void()> onCancel);

}  // namespace OrvelUI
