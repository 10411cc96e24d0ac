#pragma once

#include <QAbstractButton>

namespace OrvelUI {

/// A button that Return presses too. Only its owner changes its checked state; a press is just
/// reported.
class PressableButton : public QAbstractButton {
  public:
    explicit PressableButton(QWidget* parent);

  protected:
    void nextCheckState() override {}
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    /// The opacity of the highlight for the pointer.
    double highlight() const;
};

}  // namespace OrvelUI
