#pragma once

#include <QWidget>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Qt/IndicatorWidget.h"
#include "OrvelUI/Qt/IslandPasswordField.h"

namespace OrvelUI {

/// The part of the island and of an open badge that takes the password. It uses the whole width of
/// the widget.
class CardBodyWidget final : public QWidget {
  public:
    /// `top` is the space above the avatar, in points.
    CardBodyWidget(LockCardModel& model, double top, double fieldRadius, QWidget* parent);

    IslandPasswordField& field() { return *field_; }
    void setContent(const CardBodyContent& content);

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF avatarRect() const;
    /// The largest area that name and caption can take, in points.
    QRectF textRect() const;

    LockCardModel& model_;
    double top_;
    CardBodyContent content_;
    IndicatorWidget* indicator_;
    IslandPasswordField* field_;
};

}  // namespace OrvelUI
