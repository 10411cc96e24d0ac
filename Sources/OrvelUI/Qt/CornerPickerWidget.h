#pragma once

#include <vector>

#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/FormControlWidget.h"

namespace OrvelUI {

/// A display with selectable corners.
class CornerPickerWidget final : public FormControlWidget {
  public:
    explicit CornerPickerWidget(QWidget* parent);

    void setContent(const FormRow& row, const FormStyle& style) override;
    QSize sizeHint() const override;
    Place place() const override { return Place::below; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    class Target;

    QRectF display() const;

    std::vector<Target*> targets_;
    FormStyle style_;
};

}  // namespace OrvelUI
