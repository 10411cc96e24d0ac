#pragma once

#include <functional>

#include "OrvelSystem/Task.h"

namespace OrvelLock {

/// Takes over the desktop for a lock and gives it back.
class KioskControlling {
  public:
    virtual ~KioskControlling() = default;

    /// Prepares what hides the desktop if the app dies while its covers are up. Call it right
    /// before they come up; `release` undoes it.
    virtual void prepare() = 0;
    /// Returns true when the app has taken over, and false when it has taken nothing.
    virtual OrvelSystem::Task<bool> engage() = 0;
    /// Gives everything back, in any state. Reactivates the app that was in front before the lock
    /// if `restoringFocus`, and forgets it in either case.
    virtual void release(bool restoringFocus) = 0;

    /// Takes back what was lost since `engage` or `yield`: the keyboard first, then the top of the
    /// stacking order. It is called on every tick of a lock that is not handed off, even when
    /// `engage` failed or never ran, so it must be cheap while nothing is lost. Returns false while
    /// another program has the desktop; the caller must not claim then that the lock holds. Where
    /// the desktop cannot be taken away, it does nothing and returns true.
    virtual bool reassert() = 0;
    /// Releases what would keep the system's own lock from coming up over this one: the keyboard
    /// and the top of the stacking order. The covers and the input focus stay, and no key reaches
    /// another program. Called right before the hand-off; `reassert` or `release` ends this state.
    virtual void yield() = 0;
    /// Whether the system's own lock holds the desktop; only meaningful after `yield`. Always true
    /// where that lock cannot fail.
    virtual bool isHeldBySystemLock() = 0;

    /// Whether `onDisturbed` reports everything that `reassert` would have to take back now, so
    /// that `reassert` need not run on ticks.
    virtual bool reportsLosses() const = 0;

    /// Called when the result of `reassert` or `isHeldBySystemLock` may have changed.
    std::function<void()> onDisturbed = [] {};
};

}  // namespace OrvelLock
