#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OrvelCore/Capabilities.h"
#include "OrvelCore/Date.h"
#include "OrvelCore/Observed.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelSystem/Picture.h"

namespace OrvelUI {

/// What the status item's panel and menu offer. It is filled each time one of them opens, and not
/// updated while both are closed. Must outlive its views. Main thread only.
class MenuPanelModel {
  public:
    struct LockedApp {
        std::int64_t id = 0;  ///< Process ID.
        std::string name;
        OrvelCore::Date since;
        bool operator==(const LockedApp&) const = default;
    };
    struct PrivateChoice {
        std::string id;  ///< Bundle identifier.
        std::string name;
        std::shared_ptr<const OrvelSystem::Picture> icon;  ///< Null without an icon.
        bool chosen = false;
        bool operator==(const PrivateChoice&) const = default;
    };

    MenuPanelModel() = default;
    MenuPanelModel(const MenuPanelModel&) = delete;
    MenuPanelModel& operator=(const MenuPanelModel&) = delete;

    /// What is offered. Set before the first view is made.
    OrvelCore::Capabilities capabilities;

    template <class T>
    using Observed = OrvelCore::Observed<T>;
    using Shortcut = std::optional<OrvelCore::Shortcut>;

    /// The app to which "Lock" applies; `nullopt` if no app can be locked.
    Observed<std::optional<std::string>> frontAppName;
    Observed<bool> quickBlurOn{false};
    Observed<bool> focusBlurOn{false};
    Observed<bool> privateAppsOn{false};
    Observed<std::vector<PrivateChoice>> privateChoices;
    /// Whether the panel's list of choices is expanded.
    Observed<bool> showsPrivateChoices{false};
    Observed<std::vector<LockedApp>> lockedApps;
    /// The current time, for the ages of locks.
    Observed<OrvelCore::Date> now;
    Observed<Shortcut> lockMacShortcut;
    Observed<Shortcut> lockAppShortcut;
    Observed<Shortcut> quickBlurShortcut;
    Observed<Shortcut> focusBlurShortcut;
    /// The version of an update that is ready to install; `nullopt` without one.
    Observed<std::optional<std::string>> updateVersion;
    /// An update has been installed, and the program restarts when all locks have ended.
    Observed<bool> restartWaits{false};

    using Closure = std::function<void()>;
    Closure onLockMac = [] {};
    Closure onLockFront = [] {};
    Closure onToggleQuickBlur = [] {};
    Closure onToggleFocusBlur = [] {};
    Closure onTogglePrivateApps = [] {};
    std::function<void(const std::string& bundleID)> onTogglePrivateApp = [](const auto&) {};
    std::function<void(std::int64_t pid)> onUnlock = [](std::int64_t) {};
    Closure onOpenSettings = [] {};
    Closure onInstallUpdate = [] {};
    Closure onQuit = [] {};
    /// Called when the height of the content has changed. Set by the panel's presenter.
    Closure onResize = [] {};
    /// Called before an action that ends the use of the panel is performed. Set by the panel's
    /// presenter.
    Closure onDone = [] {};

    std::string status() const;
    std::string privateSummary() const;
    std::vector<std::string> chosenNames() const;
    /// The program must not quit while an app is locked.
    bool canQuit() const { return lockedApps.get().empty(); }
};

}  // namespace OrvelUI
