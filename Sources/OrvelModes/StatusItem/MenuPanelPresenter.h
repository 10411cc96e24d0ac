#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/WeakList.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelUI/MenuPanelModel.h"

namespace OrvelModes {

/// The floating window of the status item's panel, above the windows of other programs and on every
/// desktop. Rectangles are those of the visible card, in window-server coordinates.
class MenuPanelSurface {
  public:
    MenuPanelSurface() = default;
    MenuPanelSurface(const MenuPanelSurface&) = delete;
    MenuPanelSurface& operator=(const MenuPanelSurface&) = delete;
    virtual ~MenuPanelSurface() = default;

    /// Replaces the view by a new one, which starts in its initial state.
    virtual void renewView() = 0;
    /// The size that the view needs. Its height is at most `room`.
    virtual OrvelCore::Size fittingSize(double room) = 0;
    virtual void setFrame(const OrvelCore::Rect& frame) = 0;
    /// Shows the panel. If it takes the keyboard, this program becomes the active one; otherwise
    /// the app in front stays active.
    virtual void orderFront(bool takesKeyboard) = 0;
    /// Hides the panel. With `handBack` the keyboard is returned at once; otherwise only if no
    /// other window takes it.
    virtual void orderOut(bool handBack) = 0;

    /// Called when Escape was pressed in the panel.
    std::function<void()> onCancel = [] {};
};

struct MenuPanelSystem {
    std::function<std::unique_ptr<MenuPanelSurface>(OrvelUI::MenuPanelModel& model)> makePanel;
    /// Calls `pressed` (window-server coordinates) for each press of the left or right mouse button
    /// in any program, until the token is destroyed. The press still reaches its window.
    std::function<OrvelCore::Subscription(std::function<void(OrvelCore::Point)> pressed)>
        watchPresses;
    /// Calls `activated` for each app that becomes active, until the token is destroyed.
    std::function<OrvelCore::Subscription(std::function<void(std::int64_t pid)> activated)>
        watchActivations;
    std::int64_t ownPID = 0;

    static MenuPanelSystem live();
};

/// Shows the panel under the status item, and closes it when the user has finished with it. Main
/// thread only.
class MenuPanelPresenter {
  public:
    /// Sets the model's `onResize` and `onDone`. The model must outlive the presenter.
    MenuPanelPresenter(OrvelUI::MenuPanelModel& model, OrvelSystem::MainLoop& loop,
                       MenuPanelSystem system);
    ~MenuPanelPresenter();
    MenuPanelPresenter(const MenuPanelPresenter&) = delete;
    MenuPanelPresenter& operator=(const MenuPanelPresenter&) = delete;

    bool isOpen() const { return isOpen_; }
    /// Called just before the panel is shown, to refresh the model.
    std::function<void()> onWillOpen = [] {};
    /// Called to return the focus to the status item, where that can have it.
    std::function<void()> onHandBack = [] {};

    /// Handles a click on the status item. `anchor` is the item's rectangle, `screen` that of its
    /// display.
    void toggle(const OrvelCore::Rect& anchor, const OrvelCore::Rect& screen, bool takesKeyboard);
    void open(const OrvelCore::Rect& anchor, const OrvelCore::Rect& screen, bool takesKeyboard);
    void close(bool handBack);

  private:
    void place();
    void watchForDismissal();
    void pressed(OrvelCore::Point at);
    void forgetPress();

    OrvelUI::MenuPanelModel& model_;
    OrvelSystem::MainLoop& loop_;
    MenuPanelSystem system_;
    bool isOpen_ = false;
    std::unique_ptr<MenuPanelSurface> panel_;
    OrvelCore::Rect anchor_;
    OrvelCore::Rect screen_;
    OrvelCore::Rect frame_;
    bool hasKeyboard_ = false;
    OrvelCore::Subscription presses_;
    OrvelCore::Subscription activations_;
    /// Set after a press has closed the panel, for as long as that press may be a click on the
    /// item.
    OrvelSystem::Timer closingPress_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
