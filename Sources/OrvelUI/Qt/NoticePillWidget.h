#pragma once

#include <QPainterPath>
#include <functional>

#include "OrvelUI/NoticePill.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/FrameTimer.h"
#include "OrvelUI/Qt/LockViews.h"

namespace OrvelUI {

/// Draws one notice. Without a shadow, a window can be cut out along its outline.
class NoticePillWidget final : public OverlayView {
  public:
    /// `maximumWidth` is in Qt units; a longer notice gets an ellipsis. `onTap` is called in a
    /// later turn of the loop, so it may destroy the widget.
    NoticePillWidget(NoticePillContent content, std::optional<NotchMetrics> notch, int maximumWidth,
                     bool hasShadow, std::function<void()> onTap = nullptr);

    QMargins overhang() const override;
    QRect placement(const QSize& area) const override;
    QSize sizeHint() const override;

    const NoticePillContent& content() const { return content_; }
    /// The outline of the pill within the widget, in Qt units.
    QPainterPath outline() const;
    void tap();
    /// Fades out `after` seconds from now, within `seconds`. After that the widget takes no taps.
    void fadeOutAfter(double after, double seconds);
    /// The opacity, 0 to 1.
    double shown() const { return shown_; }
    void setShown(double shown);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    /// The rectangle of the pill, in points.
    QRectF pill() const;
    QPainterPath shape() const;

    NoticePillContent content_;
    std::optional<NotchMetrics> notch_;
    bool hasShadow_;
    std::function<void()> onTap_;
    double width_;  // of the pill, in points
    double shown_ = 1;
    Drawing::Shadow shadow_{NoticePillContent::shadow};
    FrameTimer fading_{this};
};

}  // namespace OrvelUI
