#pragma once

namespace OrvelLock {

/// What the user sees of the whole-Mac lock, as its session commands it.
class LockPresenting {
  public:
    virtual ~LockPresenting() = default;
    virtual void cover() = 0;
    virtual void uncover() = 0;
    virtual void showVerifying() = 0;
    virtual void showWrongPassword() = 0;
    /// `until` is a point on the session's monotonic clock, in seconds.
    virtual void showCooldown(double until) = 0;
    virtual void showPasswordsPaused() = 0;
    virtual void showReady() = 0;
    virtual void showUnavailable() = 0;
    /// Follows a change of the display set during a lock.
    virtual void reconcileScreens() = 0;
};

}  // namespace OrvelLock
