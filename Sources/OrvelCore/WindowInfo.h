#pragma once

#include <cstdint>

#include "OrvelCore/Geometry.h"

namespace OrvelCore {

/// A window as the window server describes it. Lists of windows are frontmost first.
struct WindowInfo {
    /// The window server's number of the window. On X11 this is the root window's child, which is
    /// the frame if there is one.
    std::int64_t number = 0;
    /// 0 if unknown.
    std::int64_t ownerPID = 0;
    /// The window level; 0 is that of ordinary windows.
    std::int64_t layer = 0;
    /// In window-server coordinates.
    Rect bounds;
    bool operator==(const WindowInfo&) const = default;
};

}  // namespace OrvelCore
