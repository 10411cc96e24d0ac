#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "OrvelModes/Windows/AppWindow.h"
#include "OrvelUI/SettingsModel.h"

namespace OrvelModes {

struct SettingsWindowSystem {
    /// Makes a window that shows the model. It is not on the screen yet.
    std::function<std::unique_ptr<AppWindow>(OrvelUI::SettingsModel&)> makeWindow;
    /// Makes this the app in front.
    std::function<void()> activate;

    static SettingsWindowSystem live();
};

/// Controls the Settings window, which is made when it is first shown and then kept. Main thread
/// only.
class SettingsWindowController {
  public:
    explicit SettingsWindowController(SettingsWindowSystem system) : system_(std::move(system)) {}

    OrvelUI::SettingsModel model;
    /// Called before each `show`, to update the model.
    std::function<void()> onWillShow = [] {};

    /// Shows `pane`, or with `nullopt` the pane that was shown last.
    void show(std::optional<OrvelUI::SettingsPane> pane = std::nullopt);
    /// Null before the first `show`.
    AppWindow* window() const { return window_.get(); }

  private:
    SettingsWindowSystem system_;
    std::unique_ptr<AppWindow> window_;
};

}  // namespace OrvelModes
