#pragma once

namespace OrvelSystem {

/// Whether an unlock of the system's own lock really happened. Any program can post the
/// notifications of the lock and the unlock. Only the window server's own word, which no other
/// program can forge, proves that the screen was locked, and so that its owner has unlocked it.
class ScreenLockProof {
  public:
    /// The notification of a lock, or a look while the lock lasts; `isLocked` is the window
    /// server's word at this moment.
    void looked(bool isLocked) { wasLocked_ = wasLocked_ || isLocked; }
    /// The notification of an unlock. True when the screen was seen locked since the last unlock
    /// and is not locked any more.
    bool unlocked(bool isLocked) {
        const bool isProven = wasLocked_ && !isLocked;
        wasLocked_ = isLocked;
        return isProven;
    }

  private:
    bool wasLocked_ = false;
};

}  // namespace OrvelSystem
