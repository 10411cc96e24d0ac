#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelSystem {

/// What is known of other programs' windows: numbers, owners, layers and bounds, never contents.
/// Any thread. A read that fails gives nothing.
struct WindowServer {
    /// Front-most first, this program's own panels among them.
    static std::vector<OrvelCore::WindowInfo> onScreenWindows();
    /// The same windows, cheaper.
    static std::vector<std::int64_t> onScreenWindowNumbers();
    /// Without those that are gone, minimised, or on another desktop.
    static std::map<std::int64_t, OrvelCore::Rect> bounds(const std::vector<std::int64_t>& numbers);
    /// In window-server coordinates, the primary display first.
    static std::vector<OrvelCore::Rect> displayBounds();
};

}  // namespace OrvelSystem
