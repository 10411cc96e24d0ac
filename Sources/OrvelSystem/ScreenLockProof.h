#pragma once

namespace OrvelSystem {

/// Decides whether the owner has really unlocked the system's own lock. Any program can post the
/// notifications for lock and unlock. Only the window server's state, which no other program can
/// forge, proves that the screen was locked and that the owner has unlocked it since.
class ScreenLockProof {
  public:
    /// Call this on the notification of a lock, and on each check while the lock lasts. `isLocked`
    /// is the window server's current state.
    void looked(bool isLocked) { wasLocked_ = wasLocked_ || isLocked; }
    /// Call this on the notification of an unlock. True if the screen was seen locked since the
    /// last unlock and is no longer locked.
    bool unlocked(bool isLocked) {
        const bool isProven = wasLocked_ && !isLocked;
        wasLocked_ = isLocked;
        return isProven;
    }

  private:
    bool wasLocked_ = false;
};

}  // namespace OrvelSystem
