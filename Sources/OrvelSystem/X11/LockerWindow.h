#pragma once

#include <functional>

#include <xcb/xcb.h>

namespace OrvelSystem {

/// What stands over a program's own windows.
struct WindowsAbove {
    /// Any mapped window.
    bool any = false;
    /// An unmanaged window that fills a display, as a screen locker has.
    bool locker = false;
};

/// Looks from the top of the stack down to the first window for which `isOwn` is true; with none,
/// at all windows. Asks the server, once for each window that stands above.
WindowsAbove windowsAbove(xcb_connection_t* connection, xcb_window_t root,
                          const std::function<bool(xcb_window_t)>& isOwn);

/// Whether another client has the core keyboard. A locker that tries to grab it in the meantime is
/// not refused. `window` is a viewable one of this client.
bool isKeyboardGrabbedByOther(xcb_connection_t* connection, xcb_window_t window);

}  // namespace OrvelSystem
