#pragma once

#include <optional>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelUI/CardContent.h"
#include "OrvelUI/Motion.h"
#include "OrvelUI/Qt/CardBodyWidget.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/FrameTimer.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelUI {

/// The card of the screen lock.
class LockIslandWidget final : public OverlayView {
  public:
    LockIslandWidget(LockCardModel& model, std::optional<NotchMetrics> notch, bool reduceMotion,
                     bool increasedContrast);

    QMargins overhang() const override;
    QRect placement(const QSize& area) const override;
    QSize sizeHint() const override;

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void refresh();
    void open();
    void shake();
    void layOut();
    /// The current rectangle of the island, in points.
    QRectF islandRect() const;
    QRectF clockRect() const;

    LockCardModel& model_;
    std::optional<NotchMetrics> notch_;
    bool reduceMotion_;
    bool increasedContrast_;
    LockIslandContent content_;
    /// 0 is closed, 1 is open; slightly more than 1 while it opens.
    double progress_ = 0;
    double shakeOffset_ = 0;
    CardBodyWidget* body_;
    Drawing::Shadow shadow_;
    FrameTimer opening_{this};
    FrameTimer shaking_{this};
    std::vector<OrvelCore::Subscription> observations_;
};

}  // namespace OrvelUI
