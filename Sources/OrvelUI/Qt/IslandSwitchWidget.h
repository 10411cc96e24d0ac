#pragma once

#include "OrvelUI/Controls.h"
#include "OrvelUI/Qt/FrameTimer.h"
#include "OrvelUI/Qt/PressableButton.h"

namespace OrvelUI {

/// An on-off switch. Its knob slides when the state changes while the switch is visible.
class IslandSwitchWidget final : public PressableButton {
  public:
    IslandSwitchWidget(bool reduceMotion, QWidget* parent);

    /// Label and hint are product texts.
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
