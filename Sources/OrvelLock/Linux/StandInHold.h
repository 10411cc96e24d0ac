#pragma once

#include <functional>

#include <xcb/xcb.h>

#include "OrvelSystem/Linux/StandIn.h"
#include "OrvelSystem/Linux/X11.h"

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
    /// Whether it is to have the keys when this program dies. Only for as long as this program has
    /// them: a locker may not have grabbed them.
    void setKeys(OrvelSystem::StandIn::Keys keys);
    void giveBack();

  private:
    void lose();

    void watch();
    void handle(const xcb_generic_event_t& event);
    void tellKeys() const;

    std::function<void()> onOffered_;
    xcb_window_t window_ = XCB_NONE;
    OrvelSystem::StandIn::Keys keys_ = OrvelSystem::StandIn::Keys::free;
    bool isDown_ = false;
    OrvelSystem::X11::Subscription events_;
};

}  // namespace OrvelLock
