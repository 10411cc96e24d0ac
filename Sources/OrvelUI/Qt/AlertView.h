#pragma once

#include <functional>
#include <vector>

#include "OrvelUI/Alert.h"
#include "OrvelUI/Qt/FormButtons.h"
#include "OrvelUI/Qt/WindowView.h"

namespace OrvelUI {

/// An alert's text above its buttons.
class AlertView final : public WindowView {
  public:
    /// `chosen` is called once, with the index of the pressed button.
    AlertView(Alert alert, std::function<void(std::size_t button)> chosen);

    QSize sizeHint() const override;

  protected:
    void showModel(const FormStyle& style) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void choose(std::size_t button);

    Alert alert_;
    std::function<void(std::size_t)> chosen_;
    FormLabel* message_;
    FormLabel* informative_;
    std::vector<FormButtonWidget*> buttons_;
};

}  // namespace OrvelUI
