#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include <xcb/xcb.h>

/// The session's window manager, as the Extended Window Manager Hints know it. Main thread only.
namespace OrvelSystem::WindowManager {

/// The window by which it shows that it is there; 0 without one. One that died leaves its traces
/// on the root, so the server is asked.
xcb_window_t proof();
inline bool isThere() {
    return proof() != 0;
}

/// As it calls itself; empty without one.
std::string name();

/// Asks it to do something to a window. Without one nobody hears of it.
void request(xcb_window_t window, std::string_view type, std::initializer_list<std::uint32_t> data);

}  // namespace OrvelSystem::WindowManager
