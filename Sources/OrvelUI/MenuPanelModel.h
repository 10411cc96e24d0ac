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

/// What the status item's panel and menu offer. Written anew each time one of them opens, and not
/// kept up to date while both are closed. Outlives every view of it. Main thread only.
class MenuPanelModel {
  public:
    struct LockedApp {
        std::int64_t id = 0;  ///< Process id.
        std::string name;
        OrvelCore::Date since;
        bool operator==(const LockedApp&) const = default;
    };
    struct PrivateChoice {
        std::string id;  ///< Bundle identifier.
        std::string name;
        std::shared_ptr<const OrvelSystem::Picture> icon;  ///< Null when there is none.
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

    /// The app that "Lock" acts on; nothing when there is none that can be locked.
    Observed<std::optional<std::string>> frontAppName;
    Observed<bool> quickBlurOn{false};
    Observed<bool> focusBlurOn{false};
    Observed<bool> privateAppsOn{false};
    Observed<std::vector<PrivateChoice>> privateChoices;
    /// Whether the panel's list of choices is unfolded.
    Observed<bool> showsPrivateChoices{false};
    Observed<std::vector<LockedApp>> lockedApps;
    /// For the ages of locks.
    Observed<OrvelCore::Date> now;
    Observed<Shortcut> lockMacShortcut;
    Observed<Shortcut> lockAppShortcut;
    Observed<Shortcut> quickBlurShortcut;
    Observed<Shortcut> focusBlurShortcut;
    /// Of an update that is ready to install.
    Observed<std::optional<std::string>> updateVersion;
    /// An update has been installed, and the program waits for the end of all locks to start anew.
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
    /// The content's height has changed. The panel's presenter listens.
    Closure onResize = [] {};
    /// A choice was made that ends the panel's use; told before the choice is carried out. The
    /// panel's presenter listens.
    Closure onDone = [] {};

    std::string status() const;
    std::string privateSummary() const;
    std::vector<std::string> chosenNames() const;
    /// Nothing may quit the program while an app is locked.
    bool canQuit() const { return lockedApps.get().empty(); }
};

}  // namespace OrvelUI
