#pragma once

#include <vector>

#include "OrvelUI/Qt/FlowLayout.h"
#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/FormControlWidget.h"
#include "OrvelUI/Qt/FormPictures.h"

namespace OrvelUI {

/// Keys, symbols and buttons at the end of a row.
class RowActionsWidget final : public FormControlWidget {
  public:
    explicit RowActionsWidget(QWidget* parent);

    void setContent(const FormRow& row, const FormStyle& style) override;
    QSize sizeHint() const override;
    int heightForWidth(int width) const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    /// The visible widgets, in order.
    std::vector<QWidget*> shown() const;

    FlowLayout flow_;
    PulsingKeycapsWidget* keycaps_;
    FormLabel* text_;
    SpinnerWidget* spinner_;
    SymbolWidget* symbol_;
    std::vector<FormButtonWidget*> buttons_;
};

}  // namespace OrvelUI
