#pragma once

#include <string>
#include <string_view>

namespace OrvelSystem {

/// Makes sure of one process in a role for one user and data folder, on whatever displays. The
/// kernel releases it with the process, however that ends.
class UserLock {
  public:
    /// The app, and the guard that watches the marker of the same data folder.
    static constexpr std::string_view app = "app";
    static constexpr std::string_view guard = "guard";

    /// Tries to take the lock for this process, which makes one object for a role.
    explicit UserLock(std::string_view role);
    ~UserLock();
    UserLock(const UserLock&) = delete;
    UserLock& operator=(const UserLock&) = delete;

    /// False only when another process is known to hold it, so that without a place for the file a
    /// process too many runs rather than none.
    bool isOurs() const { return isOurs_; }

    /// Whether another process holds it.
    static bool isHeld(std::string_view role);

  private:
    int file_ = -1;
    bool isOurs_ = true;
};

}  // namespace OrvelSystem
