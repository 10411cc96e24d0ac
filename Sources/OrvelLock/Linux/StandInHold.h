#pragma once

#include <xcb/xcb.h>

#include "OrvelSystem/Linux/X11.h"

namespace OrvelLock {

/// The app's hold on its guard's stand-in, for as long as a lock is up.
class StandInHold {
  public:
    /// Takes the stand-in of the guard that runs now, and puts it under all covers. To be called
    /// when they or the shield hide the screen, since a stand-in that was up is taken down here.
    /// True when it was taken just now, and has no size yet; free of cost while it is held already.
    bool take();
    /// In pixels; larger than the screen does no harm.
    void fit(std::uint32_t width, std::uint32_t height);
    /// Whether it is to have the keys when this program dies. Only for as long as this program has
    /// them: a locker may not have grabbed them.
    void setTakesKeys(bool takes);
    void giveBack();

  private:
    void lose();

    xcb_window_t window_ = XCB_NONE;
    bool takesKeys_ = false;
    OrvelSystem::X11::Subscription events_;
};

}  // namespace OrvelLock
