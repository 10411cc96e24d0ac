#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include <xcb/xcb.h>

/// The session's window manager, as the Extended Window Manager Hints describe it. Main thread
/// only.
namespace OrvelSystem::WindowManager {

/// The window that proves the window manager's presence; 0 without one. Asks the server, since a
/// crashed window manager leaves its properties on the root window.
xcb_window_t proof();
inline bool isThere() {
    return proof() != 0;
}

/// The name that the window manager gives itself; empty without one.
std::string name();

/// Whether the window manager composites and is one of those that draw unmanaged windows in front
/// of managed ones, whatever the server's stacking order is. Sends several requests.
bool drawsPanelsInFront();

/// Asks the window manager to change a window, with a client message of the given type and up to
/// five values. Has no effect without a window manager.
void request(xcb_window_t window, std::string_view type, std::initializer_list<std::uint32_t> data);

}  // namespace OrvelSystem::WindowManager
