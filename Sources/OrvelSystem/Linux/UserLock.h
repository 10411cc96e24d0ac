#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace OrvelSystem {

/// Ensures that one process at a time has a role for one user and data folder, across all displays.
/// The kernel releases the lock when the process ends, in whatever way.
class UserLock {
  public:
    /// Roles: the app, and the guard that watches the marker in the same data folder.
    static constexpr std::string_view app = "app";
    static constexpr std::string_view guard = "guard";

    /// Tries to take the lock. A process creates at most one object per role, since closing the
    /// file would release the lock of another object.
    explicit UserLock(std::string_view role);
    ~UserLock();
    UserLock(const UserLock&) = delete;
    UserLock& operator=(const UserLock&) = delete;

    /// False only if another process is known to hold the lock. If the lock file cannot be created,
    /// this is true: an extra process is better than none.
    bool isOurs() const { return isOurs_; }

    /// Whether another process holds the lock of that role. Do not call it for a role of this
    /// process: closing the file would release its lock.
    static bool isHeld(std::string_view role);

    /// The path of a file that belongs to a role for this user and data folder. It is in the user's
    /// runtime folder, which is local to this machine even if the home folder is on a network, or
    /// else in the data folder.
    static std::filesystem::path runtimeFile(std::string_view role, std::string_view extension);

  private:
    int file_ = -1;
    bool isOurs_ = true;
};

}  // namespace OrvelSystem
