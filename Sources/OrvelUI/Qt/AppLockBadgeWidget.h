#pragma once

#include <functional>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelUI/CardContent.h"
#include "OrvelUI/Qt/CardBodyWidget.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/FrameTimer.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelUI {

/// The badge of a locked app. Whether it is open is fixed when it is made.
class AppLockBadgeWidget final : public OverlayView {
  public:
    AppLockBadgeWidget(LockCardModel& model, bool unlocking, bool reduceMotion,
                       std::function<void()> onTap, std::function<void()> onCancel);

    QMargins overhang() const override;
    QRect placement(const QSize& area) const override;
    QSize sizeHint() const override;

    bool isOpen() const { return unlocking_; }
    /// What a click on the closed badge does. Does nothing on an open badge.
    void tap();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void refresh();
    void shake();
    void layOut();
    void cancel();
    /// The rectangle of the card, in points.
    QRectF cardRect() const;

    LockCardModel& model_;
    bool unlocking_;
    bool reduceMotion_;
    std::function<void()> onTap_;
    std::function<void()> onCancel_;
    AppLockBadgeContent content_;
    double shakeOffset_ = 0;
    /// Null unless the badge is open.
    CardBodyWidget* body_ = nullptr;
    Drawing::Shadow shadow_;
    FrameTimer shaking_{this};
    std::vector<OrvelCore::Subscription> observations_;
};

}  // namespace OrvelUI
