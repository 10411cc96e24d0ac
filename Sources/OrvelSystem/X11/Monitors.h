#pragma once

#include <cstdint>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

struct Monitor {
    std::uint32_t id = 0;
    OrvelCore::Rect frame;  ///< In pixels of the root window.
    bool operator==(const Monitor&) const = default;
};

/// Whether the server tells of monitors.
bool hasMonitors(xcb_connection_t* connection);
/// The primary one first, without those that only mirror others. The whole screen where the server
/// tells of none. Waits for the server's answer.
std::vector<Monitor> readMonitors(xcb_connection_t* connection, xcb_window_t root,
                                  bool hasMonitors);

}  // namespace OrvelSystem
