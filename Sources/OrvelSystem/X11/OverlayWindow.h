#pragma once

#include <cstdint>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/WindowRepair.h"

namespace OrvelSystem {

/// Whether a compositing manager draws this screen of the connection's server.
bool isComposited(xcb_connection_t* connection, int screenNumber);

/// The window that the X server itself keeps above those of all programs, also above what is mapped
/// or raised later. It belongs to the server and stays for as long as anybody holds it. Clicks go
/// through it.
class OverlayWindow {
  public:
    /// `connection` stays the caller's; when it ends, the window is held no more.
    OverlayWindow(xcb_connection_t* connection, int screenNumber);

    /// Puts it over the whole screen, however large that becomes. What is seen stays to be seen
    /// until something is drawn; what is not drawn on and comes with a growing screen, and what is
    /// cleared, has `color`, a pixel of the screen's own visual. False, and nothing is held,
    /// without the Composite extension and under a compositing manager, which draws on it.
    bool hold(std::uint32_t color);
    /// Takes it away for those too who still hold it, unless a compositing manager has come.
    void hide();
    void release();
    /// None while it is not held.
    xcb_window_t window() const { return window_; }
    /// Whether the server still has it. Asks the server.
    bool isThere() const;
    /// How it is to be, for `repairWindow`. The server may make it as large as the screen by
    /// itself, so any size that covers the screen is right. Asks the server.
    WindowState wantedState(const xcb_generic_event_t& event) const;

  private:
    xcb_connection_t* connection_;
    int screenNumber_;
    xcb_window_t window_ = XCB_NONE;
};

}  // namespace OrvelSystem
