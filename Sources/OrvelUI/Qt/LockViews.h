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

/// A translucent widget on top of a cover. Its size is its `sizeHint`. It observes its model, which
/// must outlive it, and runs no timer while nothing moves.
class OverlayView : public QWidget {
  public:
    OverlayView();

    /// The space around the card, within the widget, for its shadow and its shake. In Qt units.
    virtual QMargins overhang() const = 0;
    /// The widget's rectangle in an area of that size, such as a display, from the top left of the
    /// area. In Qt units.
    virtual QRect placement(const QSize& area) const = 0;

  protected:
    /// For `placement`: at the upper edge of the area, in the middle or at the notch.
    QRect hanging(const std::optional<NotchMetrics>& notch, const QSize& area) const;
};

/// Makes the card of the screen lock. It is at the top of the area, below the notch if there is
/// one, takes the password, and opens when it is first shown.
std::unique_ptr<OverlayView> makeLockScreenContent(LockCardModel& model,
                                                   std::optional<NotchMetrics> notch,
                                                   bool reduceMotion,
                                                   bool increasedContrast = false);

/// Makes the pill that the other displays of a locked computer show.
std::unique_ptr<OverlayView> makeSecondaryDisplayPill(LockCardModel& model,
                                                      std::optional<NotchMetrics> notch);

/// Makes the badge of a locked app, with name and icon from the model, in the middle of the area.
/// `onTap` is called for a click on the closed badge, `onCancel` for Escape in the open one. Both
/// are called in a later turn of the loop, so they may destroy the badge.
std::unique_ptr<OverlayView> makeAppLockBadge(LockCardModel& model, bool unlocking,
                                              bool reduceMotion, std::function<void()> onTap,
                                              std::function<void()> onCancel);

}  // namespace OrvelUI
