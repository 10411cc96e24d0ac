#pragma once

#include <functional>

#include <xcb/xcb.h>

#include "OrvelLock/X11/StandInHold.h"
#include "OrvelSystem/X11/WindowRepair.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelLock {

/// A dark window under the covers and over everything else, larger than the screen: whatever part
/// of the screen a new or growing display brings is hidden before it has a cover. It also is the
/// window that holds the grabs of a lock, since it never goes away while the lock is up. Under it
/// lies the guard's stand-in.
class Shield {
  public:
    /// `onGrabsLost` when another client has unmapped, reparented or destroyed the window, which
    /// ends the grabs; the window is there again by then.
    explicit Shield(std::function<void()> onGrabsLost);
    ~Shield();
    Shield(const Shield&) = delete;
    Shield& operator=(const Shield&) = delete;

    /// Changes when another client destroys the window.
    xcb_window_t window() const { return window_; }
    /// The stand-in that a guard offers is held from then on until `hide`.
    void takeStandIn();
    /// Harmless while it shows; looks for a stand-in that is missing.
    void show();
    void hide();
    bool isShown() const { return state_.isMapped; }
    StandInHold& standIn() { return standIn_; }

  private:
    void makeWindow();
    void map();
    void fit();
    void handle(const xcb_generic_event_t& event);

    std::function<void()> onGrabsLost_;
    xcb_window_t window_ = XCB_NONE;
    OrvelSystem::WindowState state_;
    StandInHold standIn_;
    OrvelSystem::X11::Subscription events_;
};

}  // namespace OrvelLock
