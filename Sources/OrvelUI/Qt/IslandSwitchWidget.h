#pragma once

#include "OrvelUI/Controls.h"
#include "OrvelUI/Qt/FrameTimer.h"
#include "OrvelUI/Qt/PressableButton.h"

namespace OrvelUI {

/// An on-off switch. Its knob slides when the content turns it while it can be seen.
class IslandSwitchWidget final : public PressableButton {
  public:
    IslandSwitchWidget(bool reduceMotion, QWidget* parent);

    /// The label and hint are the product's words.
    void setContent(IslandSwitch content);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void slideTo(double end);

    bool reduceMotion_;
    std::function<void()> toggle_;
    double position_ = 0;
    FrameTimer sliding_{this};
};

}  // namespace OrvelUI
