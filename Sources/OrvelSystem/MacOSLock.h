#pragma once

namespace OrvelSystem {

/// The system's own screen lock; on Linux, despite the name, the locker of the session. Each call
/// blocks for at most a fraction of a second, however the system behaves.
struct MacOSLock {
    /// Whether the system's direct way of locking this session was found.
    static bool isAvailable();
    /// Requests the lock. True means only that the request was sent; `SessionEvents` and
    /// `isScreenLocked` tell whether the screen is locked.
    static bool engage();
    /// Requests the lock in a second way, which depends on the user's settings. `engage` uses it if
    /// the direct way is missing; call it if a request had no effect. False if the request could
    /// not be started.
    static bool engageFallback();
    /// False if the system does not report its state.
    static bool isScreenLocked();
};

}  // namespace OrvelSystem
