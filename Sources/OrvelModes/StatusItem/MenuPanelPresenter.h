#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelUI/MenuPanelModel.h"

namespace OrvelModes {

/// The floating window of the status item's panel, above the windows of other programs and on
/// every desktop. Rectangles are the visible card's, in window-server coordinates.
class MenuPanelSurface {
  public:
    MenuPanelSurface() = default;
    MenuPanelSurface(const MenuPanelSurface&) = delete;
    MenuPanelSurface& operator=(const MenuPanelSurface&) = delete;
    virtual ~MenuPanelSurface() = default;

    /// Puts a new view of the model in place of the old one, so that it starts afresh.
    virtual void renewView() = 0;
    /// What the view needs, its height being at most `room`.
    virtual OrvelCore::Size fittingSize(double room) = 0;
    virtual void setFrame(const OrvelCore::Rect& frame) = 0;
    /// Shows the panel. With the keyboard, this program becomes the active one; without, the app
    /// in front stays where it is.
    virtual void orderFront(bool takesKeyboard) = 0;
    /// Hides the panel. The keyboard goes back at once with `handBack`; otherwise only where nobody
    /// else takes it.
    virtual void orderOut(bool handBack) = 0;

    /// Escape was pressed in the panel.
    std::function<void()> onCancel = [] {};
};

struct MenuPanelSystem {
    using Token = std::shared_ptr<void>;

    std::function<std::unique_ptr<MenuPanelSurface>(OrvelUI::MenuPanelModel& model)> makePanel;
    /// Hears of each press of the left or right mouse button in any program, until the token is
    /// dropped. Presses always pass on.
    std::function<Token(std::function<void(OrvelCore::Point)> pressed)> watchPresses;
    /// Hears of each app that becomes active, until the token is dropped.
    std::function<Token(std::function<void(std::int64_t pid)> activated)> watchActivations;
    std::int64_t ownPID = 0;

    static MenuPanelSystem live();
};

/// Shows the panel under the status item, and closes it on whatever ends its use. Main thread only.
class MenuPanelPresenter {
  public:
    /// Listens to the model's `onResize` and `onDone`. The model outlives the presenter.
    MenuPanelPresenter(OrvelUI::MenuPanelModel& model, OrvelSystem::MainLoop& loop,
                       MenuPanelSystem system);
    ~MenuPanelPresenter();
    MenuPanelPresenter(const MenuPanelPresenter&) = delete;
    MenuPanelPresenter& operator=(const MenuPanelPresenter&) = delete;

    bool isOpen() const { return isOpen_; }
    /// Refreshes the model just before the panel shows.
    std::function<void()> onWillOpen = [] {};
    /// Puts the focus back to the status item, where that can have it.
    std::function<void()> onHandBack = [] {};

    /// A click on the status item. `anchor` is the item's rectangle, `screen` its display's.
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
    MenuPanelSystem::Token presses_;
    MenuPanelSystem::Token activations_;
    /// Set while the newest press is the one that closed the panel, for as long as a click takes.
    OrvelSystem::Timer closingPress_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
