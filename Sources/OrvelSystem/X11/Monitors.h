#pragma once

#include <cstdint>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

struct Monitor {
    std::uint32_t id = 0;
    OrvelCore::Rect frame;  // in pixels of the root window
    bool operator==(const Monitor&) const = default;
};

/// Whether the server supports monitors (RandR 1.5).
bool hasMonitors(xcb_connection_t* connection);
/// The primary monitor comes first; monitors that only mirror others are omitted. Returns the whole
/// screen if the server reports no monitors. Waits for the server's reply.
std::vector<Monitor> readMonitors(xcb_connection_t* connection, xcb_window_t root,
                                  bool hasMonitors);

}  // namespace OrvelSystem
