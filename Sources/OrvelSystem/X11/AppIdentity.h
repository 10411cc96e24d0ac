#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/Linux/DesktopEntries.h"

namespace OrvelSystem {

/// The properties that identify the app of a process. Unknown ones are empty.
struct AppTraits {
    std::string windowInstance;  // the two parts of `WM_CLASS`
    std::string windowClass;
    /// The desktop entry that the toolkit names in a property of the window.
    std::string toolkitID;
    /// The sandboxed app to which the process belongs.
    std::string sandbox;
    /// The app that the session manager started, if this process belongs to it or was started from
    /// it.
    std::string scope;
    std::string executable;  // the file name, without a folder
};

/// The app of a process.
struct AppIdentity {
    /// The same each time the app runs; `nullopt` if nothing is known about it.
    std::optional<std::string> bundleID;
    /// The name shown to users; empty if nothing is known.
    std::string name;
    bool operator==(const AppIdentity&) const = default;
};

/// `window` is a window of the process, or 0.
AppTraits appTraits(std::int64_t pid, xcb_window_t window);

/// Identifies the app by the desktop entry that matches. Without one, the executable or the window
/// class identifies the app, so that every app can be recognised again.
AppIdentity identifyApp(const std::vector<DesktopEntry>& entries, const AppTraits& traits);

/// Extracts the app from the contents of `/proc/<pid>/cgroup`.
void readControlGroup(std::string_view text, AppTraits& traits);

/// The file name of the program that a command runs, without a folder. Empty if it is an
/// interpreter or another launcher, which does not identify the program.
std::string programOf(const std::vector<std::string>& command);

}  // namespace OrvelSystem
