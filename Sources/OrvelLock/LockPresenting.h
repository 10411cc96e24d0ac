#pragma once

namespace OrvelLock {

/// The user interface of the screen lock, as the lock session controls it.
class LockPresenting {
  public:
    virtual ~LockPresenting() = default;
    virtual void cover() = 0;
    virtual void uncover() = 0;
    virtual void showVerifying() = 0;
    virtual void showWrongPassword() = 0;
    /// `until` is in seconds of the session's monotonic clock.
    virtual void showCooldown(double until) = 0;
    virtual void showPasswordsPaused() = 0;
    virtual void showReady() = 0;
    virtual void showUnavailable() = 0;
    /// Adapts the covers to a change of displays during a lock.
    virtual void reconcileScreens() = 0;
    /// Sets when the session needs its next tick: at the latest `seconds` from now, rounded up to
    /// the tick interval. It holds until the next call, and infinity means that only events matter.
    virtual void tickWithin(double seconds) = 0;
};

}  // namespace OrvelLock
