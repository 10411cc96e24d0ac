#pragma once

#include <QWidget>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Qt/FrameTimer.h"

namespace OrvelUI {

/// The symbol of the fingerprint sensor, or the spinner that replaces it.
class IndicatorWidget final : public QWidget {
  public:
    explicit IndicatorWidget(QWidget* parent);

    const IndicatorContent& content() const { return content_; }
    /// With `still`, the spinner does not rotate.
    void setContent(const IndicatorContent& content, bool still);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void updateTurning();

    IndicatorContent content_;
    bool still_ = false;
    double turn_ = 0;
    FrameTimer frames_{this};
};

}  // namespace OrvelUI
