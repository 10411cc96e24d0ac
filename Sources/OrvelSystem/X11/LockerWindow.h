#pragma once

#include <functional>

#include <xcb/xcb.h>

namespace OrvelSystem {

/// The windows above a program's own windows.
struct WindowsAbove {
    /// Whether any window is mapped there.
    bool any = false;
    /// Whether an unmanaged window fills a display, as a screen locker's does.
    bool locker = false;
};

/// Examines the windows from the top of the stack down to the first one for which `isOwn` is true;
/// if there is none, all windows. Queries the server for each window above. Both fields are false
/// if the server does not answer.
WindowsAbove windowsAbove(xcb_connection_t* connection, xcb_window_t root,
                          const std::function<bool(xcb_window_t)>& isOwn);

/// Whether a mapped window inside `parent`, whose origin is that of the root, fills a display.
/// False if `parent` does not exist.
bool hasLockerInside(xcb_connection_t* connection, xcb_window_t root, xcb_window_t parent);

/// Whether another client has grabbed the core keyboard. A locker that tries to grab it during the
/// check is not refused.
bool isKeyboardGrabbedByOther(xcb_connection_t* connection, xcb_window_t root);

}  // namespace OrvelSystem
