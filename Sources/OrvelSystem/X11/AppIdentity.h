#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/Linux/DesktopEntries.h"

namespace OrvelSystem {

/// What tells which app a process is. Empty where unknown.
struct AppTraits {
    std::string windowInstance;  ///< The two parts of `WM_CLASS`.
    std::string windowClass;
    /// The desktop entry that the toolkit itself names on the window.
    std::string toolkitID;
    /// The sandboxed app that the process belongs to.
    std::string sandbox;
    /// The app that the session's manager started, and this process with it or from within it.
    std::string scope;
    std::string executable;  ///< The name of the file, without a folder.
};

/// Which app a process is.
struct AppIdentity {
    /// The same for every start of the app. Nothing when nothing at all is known of it.
    std::optional<std::string> bundleID;
    /// As users know it; empty when nothing is known.
    std::string name;
    bool operator==(const AppIdentity&) const = default;
};

/// `window` is one of the process's; 0 for none.
AppTraits appTraits(std::int64_t pid, xcb_window_t window);

/// By the desktop entry that fits. Without one, the program's own file stands for the app, so that
/// every app can be told again.
AppIdentity identifyApp(const std::vector<DesktopEntry>& entries, const AppTraits& traits);

/// Takes the app out of the text of a `/proc/<pid>/cgroup`.
void readControlGroup(std::string_view text, AppTraits& traits);

/// The name of the file that a command runs, without a folder; empty where it is an interpreter or
/// another starter, which says nothing about the program.
std::string programOf(const std::vector<std::string>& command);

}  // namespace OrvelSystem
