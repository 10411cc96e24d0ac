#pragma once

#include <cstdint>

#include <xcb/xcb.h>

namespace OrvelSystem {

/// The required state of a child of the root window. Root coordinates, in pixels.
struct WindowState {
    bool isMapped = false;
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t width = 1;
    std::uint16_t height = 1;
    /// Whether the window must have no bounding shape, so that any shape was set by another client.
    bool isUnshaped = true;
};

enum class WindowChange {
    none,
    /// Another client changed the window, and the change has been undone.
    repaired,
    /// Another client destroyed the window.
    destroyed,
};

/// The events that `repairWindow` needs; select them on the window.
inline constexpr std::uint32_t windowRepairEvents =
    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
/// Selects events for changes of the window's shape, which need a separate selection.
void watchShape(xcb_connection_t* connection, xcb_window_t window);

/// Undoes the change of the window that the event reports. Any client may unmap, move, resize,
/// reparent, reshape or destroy the windows of any other, or make a compositing manager draw them
/// translucent. The caller must restore the position in the stacking order. A change that the
/// program itself makes must be in `wanted` before its event arrives.
WindowChange repairWindow(xcb_connection_t* connection, const xcb_screen_t& screen,
                          xcb_window_t window, const WindowState& wanted,
                          const xcb_generic_event_t& event);

}  // namespace OrvelSystem
