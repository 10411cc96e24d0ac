#pragma once

#include <cstdint>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/WindowRepair.h"

namespace OrvelSystem {

/// Whether a compositing manager is running on this screen.
bool isComposited(xcb_connection_t* connection, int screenNumber);

/// The overlay window of the Composite extension, which the X server keeps above the
/// windows of all programs, including those that are mapped or raised later. It belongs to the
/// server and exists while any client holds it. Clicks pass through it.
class OverlayWindow {
  public:
    /// The caller owns `connection`; the hold ends when the connection does.
    OverlayWindow(xcb_connection_t* connection, int screenNumber);

    /// Extends the window over the whole screen, including its later growth. The visible contents
    /// stay until something is drawn. New areas of a growing screen and cleared areas get `color`,
    /// a pixel value of the screen's own visual. Returns false and holds nothing without the
    /// Composite and Shape extensions, and under a compositing manager, which draws on this window.
    bool hold(std::uint32_t color);
    /// Unmaps the window, also for other clients that hold it, unless a compositing manager has
    /// started or a locker is inside.
    void hide();
    void release();
    /// Whether another program has put a window that fills a display into the overlay, as some
    /// lockers do. It is above all other windows, and not among the children of the root. Also
    /// known after the first hold has ended. Asks the server.
    bool hasLocker() const;
    /// `XCB_NONE` while it is not held.
    xcb_window_t window() const { return window_; }
    /// Whether the window still exists. Asks the server.
    bool isThere() const;
    /// The state that `repairWindow` must establish. The server may resize the window to the screen
    /// by itself, so any size that covers the screen is accepted. Asks the server.
    WindowState wantedState(const xcb_generic_event_t& event) const;

  private:
    xcb_connection_t* connection_;
    int screenNumber_;
    xcb_window_t window_ = XCB_NONE;
    xcb_window_t number_ = XCB_NONE;  // that of the last hold; the server always gives the same
};

}  // namespace OrvelSystem
