#pragma once

#include <xcb/xcb.h>

#include "OrvelLock/Linux/StandInHold.h"
#include "OrvelSystem/Linux/X11.h"

namespace OrvelLock {

/// A dark window under the covers and over everything else, larger than the screen: whatever part
/// of the screen a new or growing display brings is hidden before it has a cover. It also is the
/// window that holds the grabs of a lock, since it never goes away while the lock is up. Under it
/// lies the guard's stand-in.
class Shield {
  public:
    Shield();
    ~Shield();
    Shield(const Shield&) = delete;
    Shield& operator=(const Shield&) = delete;

    xcb_window_t window() const { return window_; }
    /// The stand-in that a guard offers is held from then on until `hide`.
    void takeStandIn();
    /// Harmless while it shows; looks for a stand-in that is missing.
    void show();
    void hide();
    StandInHold& standIn() { return standIn_; }

  private:
    void fit();

    xcb_window_t window_;
    bool isShown_ = false;
    StandInHold standIn_;
    OrvelSystem::X11::Subscription events_;
};

}  // namespace OrvelLock
