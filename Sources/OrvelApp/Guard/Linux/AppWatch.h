#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include <poll.h>

namespace OrvelApp {

/// The processes of the app that use this process's data folder, each held by a descriptor that
/// cannot come to mean another process.
class AppWatch {
  public:
    explicit AppWatch(std::filesystem::path executable) : executable_(std::move(executable)) {}

    bool isRunning() const { return !processes_.empty(); }

    /// Begins to watch what runs now, and takes over the environment of the first process: a
    /// service of the user manager may know neither the display nor the session. The environment is
    /// kept in the runtime folder for a guard that is started anew. Processes that only hand a
    /// request over to the running app and end at once may be among them, so the app has gone when
    /// all of them have.
    void adopt();
    /// Takes over the environment that was kept. False when there is none.
    static bool restoreEnvironment();

    void appendTo(std::vector<pollfd>& polled) const;
    /// True when the last of them has just ended.
    bool drop(const std::vector<pollfd>& polled);
    /// Starts the app, unless it runs.
    void relaunch();

  private:
    struct Process {
        std::int64_t pid;
        int descriptor;
    };

    std::filesystem::path executable_;
    std::vector<Process> processes_;
};

/// Tells of every change in the folder that holds the marker. Makes the folder where it is missing.
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
