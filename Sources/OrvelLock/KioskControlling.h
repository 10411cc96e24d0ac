#pragma once

#include <functional>

#include "OrvelSystem/Task.h"

namespace OrvelLock {

/// How the app takes over the desktop for a lock, and gives it back.
class KioskControlling {
  public:
    virtual ~KioskControlling() = default;

    /// Called right before the covers come up: what is to hide the desktop if the app goes while
    /// they are up is made ready. `release` ends it.
    virtual void prepare() = 0;
    /// True when the app has taken over; false when nothing was taken.
    virtual OrvelSystem::Task<bool> engage() = 0;
    /// Gives everything back, in any state. Also forgets which app was in front before, after
    /// returning to it when `restoringFocus`.
    virtual void release(bool restoringFocus) = 0;

    /// Takes again what was lost since `engage` or `yield`: the keys first, and with them the top
    /// of the stacking order. Called on every tick of a lock that is not handed off, also when
    /// `engage` failed or never ran, so it costs nothing while nothing is lost. False while another
    /// program has the desktop; the caller then may not claim that the lock holds. A desktop that
    /// cannot be taken away needs nothing here.
    virtual bool reassert() = 0;
    /// Gives up what would keep the system's own lock from coming up over this one: the keyboard
    /// and the top of the stacking order. The covers and the input focus stay, and no key reaches
    /// another program. Called right before the hand-off; `reassert` or `release` ends it.
    virtual void yield() = 0;
    /// Whether, since `yield`, the system's own lock holds the desktop. Always true where that lock
    /// cannot fail.
    virtual bool isHeldBySystemLock() = 0;

    /// The answers of `reassert` and `isHeldBySystemLock` may be other ones now.
    std::function<void()> onDisturbed = [] {};
};

}  // namespace OrvelLock
