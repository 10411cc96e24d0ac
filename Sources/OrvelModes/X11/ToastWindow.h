#pragma once

#include <QWidget>
#include <memory>

#include <xcb/xcb.h>

#include "OrvelModes/Feedback/ToastPresenter.h"
#include "OrvelUI/Qt/NoticePillWidget.h"

namespace OrvelModes {

/// The window for notices, as large as the pill and not managed by the window manager. With a
/// compositing manager the pill has a shadow and fades out; otherwise its shape is cut out and it
/// slides back up.
class ToastWindow final : public ToastPanel {
  public:
    ToastWindow();
    ~ToastWindow() override;

    void show(const OrvelUI::NoticePillContent& notice, const OrvelCore::Rect& display) override;
    void setAlpha(double alpha) override;
    void orderOut() override;

  private:
    QWidget window_;
    xcb_window_t id_ = 0;
    std::unique_ptr<OrvelUI::NoticePillWidget> pill_;
    bool isComposited_ = false;
};

}  // namespace OrvelModes
