#pragma once

#include <optional>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelUI/CardContent.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelUI {

/// The pill on a display without the card.
class SecondaryDisplayPillWidget final : public OverlayView {
  public:
    SecondaryDisplayPillWidget(LockCardModel& model, std::optional<NotchMetrics> notch);

    QMargins overhang() const override;
    QRect placement(const QSize& area) const override;
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void refresh();

    LockCardModel& model_;
    std::optional<NotchMetrics> notch_;
    SecondaryDisplayPillContent content_;
    Drawing::Shadow shadow_;
    std::vector<OrvelCore::Subscription> observations_;
};

}  // namespace OrvelUI
