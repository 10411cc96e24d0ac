#pragma once

#include <cstdint>

#include <xcb/xcb.h>

namespace OrvelSystem {

/// How a child of the root window is to be. Root coordinates, in pixels.
struct WindowState {
    bool isMapped = false;
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t width = 1;
    std::uint16_t height = 1;
    /// Whether the window has no bounding shape, so that any shape is another client's doing.
    bool isUnshaped = true;
};

enum class WindowChange {
    none,
    /// Another client changed the window, and it has been put back.
    repaired,
    /// Another client destroyed the window.
    destroyed,
};

/// The events that `repairWindow` needs of the window: to be selected on it.
inline constexpr std::uint32_t windowRepairEvents =
    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
/// Asks the server to tell of changes of the window's shape, which have a selection of their own.
void watchShape(xcb_connection_t* connection, xcb_window_t window);

/// Any client may unmap, move, resize, reparent, reshape or destroy the windows of any other, and
/// have a compositing manager draw them translucent. Undoes what the event tells of. The place in
/// the stacking order is for the caller to restore. A change that the program itself makes must be
/// in `wanted` before its event arrives.
WindowChange repairWindow(xcb_connection_t* connection, const xcb_screen_t& screen,
                          xcb_window_t window, const WindowState& wanted,
                          const xcb_generic_event_t& event);

}  // namespace OrvelSystem
