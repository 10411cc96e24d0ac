#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include <poll.h>

namespace OrvelApp {

/// The processes of the app that use the same data folder as this process. Each is held by a pidfd,
/// which never refers to another process.
class AppWatch {
  public:
    explicit AppWatch(std::filesystem::path executable) : executable_(std::move(executable)) {}

    bool isRunning() const { return !processes_.empty(); }
    /// False also while the kernel ends the app, which no longer does anything then.
    bool isAlive() const;

    /// Starts to watch the processes that run now, and takes over the environment of the first one,
    /// because a service of the user manager may know neither the display nor the session. The
    /// environment is also stored in the runtime folder for a guard that is started later. Some of
    /// the processes may only pass a request to the running app and end at once, so the app has
    /// ended when all of them have.
    void adopt();
    /// Takes over the stored environment. Returns false when there is none.
    static bool restoreEnvironment();

    /// Adds the descriptors of the processes, for `poll`.
    void appendTo(std::vector<pollfd>& polled) const;
    enum class Change { none, ending, ended };
    /// Forgets the processes that have ended. Returns what has just happened to the app.
    Change update(const std::vector<pollfd>& polled);
    /// Starts the app unless it runs.
    void relaunch();

  private:
    struct Process {
        std::int64_t pid;
        int descriptor;
        int exitPipe;  // negative without one
        bool isEnding = false;
    };

    std::filesystem::path executable_;
    std::vector<Process> processes_;
};

/// Watches the folder that holds the marker for changes. Creates the folder if it is missing.
class FolderWatch {
  public:
    explicit FolderWatch(std::filesystem::path folder);

    int descriptor() const { return inotify_; }
    void drain();

  private:
    void begin();

    std::filesystem::path folder_;
    int inotify_;
};

}  // namespace OrvelApp
