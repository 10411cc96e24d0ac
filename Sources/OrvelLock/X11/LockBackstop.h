#pragma once

#include <xcb/xcb.h>

#include "OrvelCore/WeakList.h"
#include "OrvelLock/X11/StandInClaim.h"
#include "OrvelSystem/X11/WindowRepair.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelLock {

/// A dark window under the covers and above everything else, larger than the screen. When a display
/// is added or grows, it hides the new part of the screen until that part has a cover. The
/// guard's stand-in is below it.
class LockBackstop {
  public:
    LockBackstop();
    ~LockBackstop();
    LockBackstop(const LockBackstop&) = delete;
    LockBackstop& operator=(const LockBackstop&) = delete;

    /// Takes the guard's stand-in, now or when a guard offers it later, and holds it until `hide`.
    void takeStandIn();
    /// Shows the window, and takes a stand-in that is still missing. May be called while it is
    /// shown.
    void show();
    void hide();
    bool isShown() const { return state_.isMapped; }
    StandInClaim& standIn() { return standIn_; }

  private:
    void makeWindow();
    void map();
    void fit();
    void handle(const xcb_generic_event_t& event);

    xcb_window_t window_ = XCB_NONE;
    OrvelSystem::WindowState state_;
    StandInClaim standIn_;
    OrvelCore::Subscription events_;
};

}  // namespace OrvelLock
