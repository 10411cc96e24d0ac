#pragma once

#include <QWidget>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Qt/IndicatorWidget.h"
#include "OrvelUI/Qt/IslandPasswordField.h"

namespace OrvelUI {

/// What takes the password, in the island and in an open badge, as wide as it is made.
class CardBodyWidget final : public QWidget {
  public:
    /// `top` is the room above the avatar, in points.
    CardBodyWidget(LockCardModel& model, double top, double fieldRadius, QWidget* parent);

    /// From the top of the widget to the bottom of the field, in points.
    static double height(double top);

    IslandPasswordField& field() { return *field_; }
    void setContent(const CardBodyContent& content);

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF avatarRect() const;
    /// Name and caption, where they are at their longest.
    QRectF textRect() const;

    LockCardModel& model_;
    double top_;
    CardBodyContent content_;
    IndicatorWidget* indicator_;
    IslandPasswordField* field_;
};

}  // namespace OrvelUI
