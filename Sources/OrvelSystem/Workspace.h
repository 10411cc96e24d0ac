#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Picture.h"

namespace OrvelSystem {

/// A running app.
struct RunningApplication {
    std::int64_t pid = 0;
    /// The same each time the app runs; `nullopt` if it is unknown.
    std::optional<std::string> bundleID;
    /// The name shown to users; empty if it is unknown.
    std::string name;
    bool operator==(const RunningApplication&) const = default;
};

/// An installed app.
struct InstalledApplication {
    std::string bundleID;
    std::string name;
    bool operator==(const InstalledApplication&) const = default;
};

/// The apps that the user sees as running. On Linux a process counts as an app while it has an
/// ordinary window, on macOS while it shows in the Dock. A call for a process that has ended does
/// nothing. Main thread only.
class Workspace {
  public:
    struct Events {
        /// `pid` is 0 if the owner of the active window is unknown.
        std::function<void(std::int64_t pid)> activated = [](std::int64_t) {};
        /// The process now counts as a running app. On Linux this is reported again each time the
        /// process gets a window after having none.
        std::function<void(std::int64_t pid)> launched = [](std::int64_t) {};
        /// The process has ended. Closing its last window does not count.
        std::function<void(std::int64_t pid)> terminated = [](std::int64_t) {};
        /// The user switched to another desktop.
        std::function<void()> activeSpaceChanged = [] {};
        std::function<void()> unhidden = [] {};
    };

    static Workspace& shared();
    virtual ~Workspace() = default;

    /// In the order in which they started, or on Linux in the order of their first windows.
    virtual std::vector<RunningApplication> runningApplications() = 0;
    /// `nullopt` if the process is not running.
    virtual std::optional<RunningApplication> application(std::int64_t pid) = 0;
    virtual std::optional<RunningApplication> frontmostApplication() = 0;
    /// Null if the app has no icon.
    virtual std::shared_ptr<const Picture> icon(std::int64_t pid) = 0;
    virtual std::shared_ptr<const Picture> icon(std::string_view bundleID) = 0;
    /// The apps that menus show, sorted by name.
    virtual std::vector<InstalledApplication> installedApplications() = 0;
    /// `nullopt` if the app is not installed.
    virtual std::optional<std::string> nameOfInstalled(std::string_view bundleID) = 0;

    virtual bool isActive(std::int64_t pid) = 0;
    /// Restores the windows that `hide` removed and raises the window that was last active.
    virtual void activate(std::int64_t pid) = 0;
    /// Removes all windows of the app from the screen: minimises them on Linux, hides the app on
    /// macOS.
    virtual void hide(std::int64_t pid) = 0;
    /// Asks the app to quit, on Linux with SIGTERM.
    virtual void terminate(std::int64_t pid) = 0;

    /// Reports events until the token is destroyed.
    [[nodiscard]] virtual OrvelCore::Subscription observe(Events events) = 0;
};

}  // namespace OrvelSystem
