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

/// The panel for notices, above the windows of other programs. It takes neither clicks nor keys.
class ToastPanel {
  public:
    ToastPanel() = default;
    ToastPanel(const ToastPanel&) = delete;
    ToastPanel& operator=(const ToastPanel&) = delete;
    virtual ~ToastPanel() = default;

    /// Shows the notice at the top of a display instead of any other notice, in front and fully
    /// opaque. `display` is in window-server coordinates.
    virtual void show(const OrvelUI::NoticePillContent& notice, const OrvelCore::Rect& display) = 0;
    /// 0 to 1.
    virtual void setAlpha(double alpha) = 0;
    virtual void orderOut() = 0;
};

/// What `ToastPresenter` needs from the platform. Main thread only.
struct ToastSystem {
    std::function<std::unique_ptr<ToastPanel>()> makePanel;
    /// The frames of the displays, in window-server coordinates, the main display first.
    std::function<std::vector<OrvelCore::Rect>()> screens;
    /// In window-server coordinates.
    std::function<OrvelCore::Point()> pointer;
    std::function<bool()> reduceMotion;
    std::function<bool()> increasedContrast;

    static ToastSystem live();
};

/// Shows a short notice on the display under the pointer and removes it after a while. Main thread
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

    /// Replaces the current notice and is shown for the full time. Does nothing without a display.
    /// `detail` may be `nullopt`; `symbol` is the name of a symbol.
    void show(const std::string& title, const std::optional<std::string>& detail,
              const std::string& symbol);

  private:
    void fadeOut();

    OrvelSystem::MainLoop& loop_;
    ToastSystem system_;
    std::unique_ptr<ToastPanel> panel_;  // kept after the first notice
    OrvelSystem::Timer timer_;           // the time until the current notice fades, then its fade
};

}  // namespace OrvelModes
