#pragma once

#include <set>

#include <xcb/xcb.h>

#include "OrvelSystem/Linux/X11.h"

namespace OrvelLock {

/// The windows of other programs, kept off the screen while a lock holds it. A window that comes to
/// the top is put below again, but only after the server has told of it; one that the server does
/// not draw on the screen is not seen until then either. Without effect under a compositing
/// manager, which does the drawing itself.
class OtherWindows {
  public:
    /// To be called when the screen is hidden. Harmless while they are hidden.
    void hide();
    void show();

  private:
    void hide(xcb_window_t window);
    void reveal(xcb_window_t window);
    void revealOwned();
    void handle(const xcb_generic_event_t& event);

    std::set<xcb_window_t> hidden_;
    OrvelSystem::X11::Subscription events_;
};

}  // namespace OrvelLock
