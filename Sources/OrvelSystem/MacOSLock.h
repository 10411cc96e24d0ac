#pragma once

namespace OrvelSystem {

/// The system's own screen lock. All of it keeps the main thread for a fraction of a second at
/// most, however the system behaves.
struct MacOSLock {
    /// Whether the system's own way to lock this session at once was found.
    static bool isAvailable();
    /// Asks for the lock. True means only that the request went out; `SessionEvents` and
    /// `isScreenLocked` tell whether the screen is locked.
    static bool engage();
    /// The second way, which depends on the user's settings; `engage` takes it when the first is
    /// not there. For whoever finds that a request went unheard. False when it could not start.
    static bool engageFallback();
    /// False whenever the system does not say so.
    static bool isScreenLocked();
};

}  // namespace OrvelSystem
