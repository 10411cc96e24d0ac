#pragma once

#include <cstdint>
#include <functional>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/StandIn.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelLock {

/// The app's hold on its guard's stand-in, for as long as a lock is up.
class StandInHold {
  public:
    /// `onOffered` when a guard offers one while none is held, from the first `take` on.
    explicit StandInHold(std::function<void()> onOffered);

    /// Takes the stand-in of the guard that runs now, and puts it under all covers. True when it
    /// was taken just now, and has no size yet; free of cost while it is held already.
    bool take();
    /// Takes down what an app before this one has left up. To be called when this one hides the
    /// screen and has the keys, which end at the stand-in until then, or leaves both to a locker.
    void takeDown();
    /// In pixels; larger than the screen does no harm.
    void fit(std::uint32_t width, std::uint32_t height);
    /// What the guard is to take, now and when this program dies.
    /// `keys` as in `StandIn::Keys`.
    void setKeys(std::uint32_t keys);
    /// Whether the guard says that it takes every key that no active grab takes. Asks the server.
    bool hasNet() const;
    void giveBack();

  private:
    void lose();

    void watch();
    void handle(const xcb_generic_event_t& event);
    void tellKeys() const;

    std::function<void()> onOffered_;
    xcb_window_t window_ = XCB_NONE;
    std::uint32_t keys_ = OrvelSystem::StandIn::free;
    bool isDown_ = false;
    OrvelSystem::X11::Subscription events_;
};

}  // namespace OrvelLock
