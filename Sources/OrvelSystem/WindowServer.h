#pragma once

#include <map>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelSystem {

/// Metadata of all programs' windows: numbers, owners, layers and bounds, never contents. Any
/// thread. A failed read returns an empty result.
struct WindowServer {
    /// Frontmost first, including this program's own panels.
    static std::vector<OrvelCore::WindowInfo> onScreenWindows();
    /// The numbers of the same windows in the same order. Cheaper than `onScreenWindows`.
    static std::vector<OrvelCore::WindowID> onScreenWindowNumbers();
    /// Bounds in window-server coordinates. Windows that are closed, minimised or on another
    /// desktop are missing from the result.
    static std::map<OrvelCore::WindowID, OrvelCore::Rect> bounds(
        const std::vector<OrvelCore::WindowID>& numbers);
    /// In window-server coordinates, the primary display first.
    static std::vector<OrvelCore::Rect> displayBounds();
};

}  // namespace OrvelSystem
