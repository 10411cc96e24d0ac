#pragma once

#include <QWidget>

#include "OrvelUI/Controls.h"

namespace OrvelUI {

/// The keys of a shortcut, at their natural size.
class KeycapsWidget final : public QWidget {
  public:
    explicit KeycapsWidget(QWidget* parent = nullptr);

    /// `theme` is that of the window; only keycaps with the tone `system` use it.
    void setContent(const Keycaps& keycaps, const SettingsTheme& theme = {});
    const Keycaps& content() const { return keycaps_; }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Keycaps keycaps_;
    SettingsTheme theme_;
};

}  // namespace OrvelUI
