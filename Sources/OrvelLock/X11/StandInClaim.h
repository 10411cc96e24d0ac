#pragma once

#include <cstdint>
#include <functional>

#include <xcb/xcb.h>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/StandIn.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelLock {

/// Holds the guard's stand-in for the app while a lock is up.
class StandInClaim {
  public:
    /// `onOffered` runs when a guard offers a stand-in while none is held, from the first `take`
    /// on.
    explicit StandInClaim(std::function<void()> onOffered);

    /// Takes the stand-in of the running guard and puts it under all covers. Returns true if this
    /// call took it; it then has no size yet. Does nothing while a stand-in is held.
    bool take();
    /// Unmaps a stand-in that a previous app process has left mapped. Call it when this process
    /// hides the screen and has the keyboard, or leaves both to a locker; until then keys end at
    /// the stand-in.
    void takeDown();
    /// In pixels; a size larger than the screen does no harm.
    void fit(std::uint32_t width, std::uint32_t height);
    /// Sets what the guard must take, now and when this program dies. `keys` is as in
    /// `StandIn::Keys`.
    void setKeys(std::uint32_t keys);
    /// Whether the guard reports that it takes every key that no active grab takes. Queries the
    /// server.
    bool hasNet() const;
    void giveBack();

  private:
    void lose();
    void release();
    void watch();
    void handle(const xcb_generic_event_t& event);
    void tellKeys() const;
    void tellKeysAgain() const;

    std::function<void()> onOffered_;
    xcb_window_t window_ = XCB_NONE;
    std::uint32_t keys_ = OrvelSystem::StandIn::free;
    bool isDown_ = false;
    OrvelCore::Subscription events_;
};

}  // namespace OrvelLock
