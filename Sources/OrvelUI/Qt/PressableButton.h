#pragma once

#include <QAbstractButton>

namespace OrvelUI {

/// A button that Return presses too, and whose state is what its owner says: a press only asks.
class PressableButton : public QAbstractButton {
  public:
    explicit PressableButton(QWidget* parent);

  protected:
    void nextCheckState() override {}
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    /// Opacity of what lights up under the pointer.
    double highlight() const;
};

}  // namespace OrvelUI
