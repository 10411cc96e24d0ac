#pragma once

#include <QTimer>
#include <QWidget>

#include <xcb/xcb.h>

#include "OrvelModes/StatusItem/MenuPanelPresenter.h"
#include "OrvelUI/Qt/Drawing.h"
#include "OrvelUI/Qt/MenuPanelView.h"

namespace OrvelModes {

/// The panel's window, at the level of menus and not managed by the window manager. With a
/// compositing manager it has smooth corners and a shadow; otherwise its shape is cut out.
class MenuPanelWindow final : public MenuPanelSurface {
  public:
    explicit MenuPanelWindow(OrvelUI::MenuPanelModel& model);
    ~MenuPanelWindow() override;

    void renewView() override;
    OrvelCore::Size fittingSize(double room) override;
    void setFrame(const OrvelCore::Rect& frame) override;
    void orderFront(bool takesKeyboard) override;
    void orderOut(bool handBack) override;

  private:
    class Window;
    void takeKeyboard();
    void giveKeyboardBack();

    OrvelUI::MenuPanelModel& model_;
    std::unique_ptr<Window> window_;
    xcb_window_t id_ = 0;
    double scale_ = 1;  // pixels per Qt unit
    xcb_window_t keyboardBefore_ = 0;
    QTimer stranded_;
};

}  // namespace OrvelModes
