#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelSystem/Picture.h"

namespace OrvelSystem {

/// An app that runs.
struct RunningApplication {
    std::int64_t pid = 0;
    /// The same for every start of the app; nothing where it cannot be told.
    std::optional<std::string> bundleID;
    /// As users know it; empty when nobody knows it.
    std::string name;
    bool operator==(const RunningApplication&) const = default;
};

/// An app that could be started.
struct InstalledApplication {
    std::string bundleID;
    std::string name;
    bool operator==(const InstalledApplication&) const = default;
};

/// The apps that a user sees as running. On Linux a process is one while it has an ordinary window,
/// on macOS for as long as it shows in the Dock. A call that names a process which is gone does
/// nothing. Main thread only.
class Workspace {
  public:
    struct Events {
        /// 0 when nobody knows whose window it is.
        std::function<void(std::int64_t pid)> activated = [](std::int64_t) {};
        /// From now on it is one of the running apps. On Linux that is told again when it has a
        /// window after it had none.
        std::function<void(std::int64_t pid)> launched = [](std::int64_t) {};
        /// The process has ended. Closing its last window is no end.
        std::function<void(std::int64_t pid)> terminated = [](std::int64_t) {};
        /// Another desktop is shown.
        std::function<void()> activeSpaceChanged = [] {};
        std::function<void()> unhidden = [] {};
    };

    static Workspace& shared();
    virtual ~Workspace() = default;

    /// In the order of their start, or on Linux of their first windows.
    virtual std::vector<RunningApplication> runningApplications() = 0;
    /// Nothing for a process that does not run.
    virtual std::optional<RunningApplication> application(std::int64_t pid) = 0;
    virtual std::optional<RunningApplication> frontmostApplication() = 0;
    /// Null without one.
    virtual std::shared_ptr<const Picture> icon(std::int64_t pid) = 0;
    virtual std::shared_ptr<const Picture> icon(std::string_view bundleID) = 0;
    /// Those that menus show, by name.
    virtual std::vector<InstalledApplication> installedApplications() = 0;
    /// Nothing for one that is not installed.
    virtual std::optional<std::string> nameOfInstalled(std::string_view bundleID) = 0;

    virtual bool isActive(std::int64_t pid) = 0;
    /// Brings back what `hide` took, and the window that was active last to the front.
    virtual void activate(std::int64_t pid) = 0;
    /// Takes all its windows off the screen, as if the user had minimised them.
    virtual void hide(std::int64_t pid) = 0;
    /// Asks it to end.
    virtual void terminate(std::int64_t pid) = 0;

    /// Tells of what happens until the token is dropped.
    [[nodiscard]] virtual std::shared_ptr<void> observe(Events events) = 0;
};

}  // namespace OrvelSystem
