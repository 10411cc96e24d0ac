#pragma once

#include "OrvelSystem/Task.h"

namespace OrvelLock {

/// How the app takes over the desktop for a lock, and gives it back.
class KioskControlling {
  public:
    virtual ~KioskControlling() = default;

    /// Called right before the covers come up: what is to hide the desktop if the app goes while
    /// they are up is made ready. `release` ends it.
    virtual void prepare() {}
    /// True when the app has taken over; false when nothing was taken.
    virtual OrvelSystem::Task<bool> engage() = 0;
    /// Gives everything back, in any state. Also forgets which app was in front before, after
    /// returning to it when `restoringFocus`.
    virtual void release(bool restoringFocus) = 0;

    /// Takes again what was lost since `engage` or `yield`: grabs first, and with them the top of
    /// the stacking order. Called on every tick of a lock that is not handed off, also when
    /// `engage` failed or never ran. False while somebody else holds the desktop; the caller then
    /// may not claim that the lock holds. A desktop that cannot be taken away needs nothing here.
    virtual bool reassert() { return true; }
    /// Lets go of what would keep the system's own lock from coming up over this one: the grabs
    /// and the top of the stacking order. The covers and the input focus stay. Called right
    /// before the hand-off; `reassert` or `release` ends it.
    virtual void yield() {}
};

}  // namespace OrvelLock
