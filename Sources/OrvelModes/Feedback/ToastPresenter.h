#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelUI/NoticePill.h"

namespace OrvelModes {

/// The panel of the notices, above the windows of other programs. It takes no click and no key.
class ToastPanel {
  public:
    ToastPanel() = default;
    ToastPanel(const ToastPanel&) = delete;
    ToastPanel& operator=(const ToastPanel&) = delete;
    virtual ~ToastPanel() = default;

    /// Puts the notice at the top of a display in place of any other, in front and fully seen.
    /// `display` in window-server coordinates.
    virtual void show(const OrvelUI::NoticePillContent& notice, const OrvelCore::Rect& display) = 0;
    /// 0 to 1.
    virtual void setAlpha(double alpha) = 0;
    virtual void orderOut() = 0;
};

/// What `ToastPresenter` needs of the platform. Main thread only.
struct ToastSystem {
    std::function<std::unique_ptr<ToastPanel>()> makePanel;
    /// In window-server coordinates, the main one first.
    std::function<std::vector<OrvelCore::Rect>()> screens;
    std::function<OrvelCore::Point()> pointer;
    std::function<bool()> reduceMotion;
    std::function<bool()> increasedContrast;

    static ToastSystem live();
};

/// Shows a short notice on the display under the pointer and takes it away by itself. Main thread
/// only.
class ToastPresenter {
  public:
    /// Seconds.
    static constexpr double visibleFor = 3;
    static constexpr double fade = 0.2;

    ToastPresenter(OrvelSystem::MainLoop& loop, ToastSystem system);
    ~ToastPresenter();
    ToastPresenter(const ToastPresenter&) = delete;
    ToastPresenter& operator=(const ToastPresenter&) = delete;

    /// In place of the notice that stands, and for its own full time. Nothing without a display.
    /// `symbol` by its name.
    void show(const std::string& title, const std::optional<std::string>& detail,
              const std::string& symbol);

  private:
    void fadeOut();

    OrvelSystem::MainLoop& loop_;
    ToastSystem system_;
    std::unique_ptr<ToastPanel> panel_;  // kept from the first notice on
    OrvelSystem::Timer timer_;           // of the notice that stands: its waiting, then its fading
};

}  // namespace OrvelModes
