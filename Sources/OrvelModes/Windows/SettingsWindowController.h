#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "OrvelModes/Windows/AppWindow.h"
#include "OrvelUI/SettingsModel.h"

namespace OrvelModes {

struct SettingsWindowSystem {
    /// A window that shows the model, not yet on the screen.
    std::function<std::unique_ptr<AppWindow>(OrvelUI::SettingsModel&)> makeWindow;
    /// Makes this the app in front.
    std::function<void()> activate;

    static SettingsWindowSystem live();
};

/// The Settings window, made when it is first wanted and kept from then on. Main thread only.
class SettingsWindowController {
  public:
    explicit SettingsWindowController(SettingsWindowSystem system) : system_(std::move(system)) {}

    OrvelUI::SettingsModel model;
    /// Called before each showing, so that the model can be brought up to date.
    std::function<void()> onWillShow = [] {};

    /// With no pane, the one that the user saw last.
    void show(std::optional<OrvelUI::SettingsPane> pane = std::nullopt);
    /// Null before it was first shown.
    AppWindow* window() const { return window_.get(); }

  private:
    SettingsWindowSystem system_;
    std::unique_ptr<AppWindow> window_;
};

}  // namespace OrvelModes
