#pragma once

#include <cstdint>

#include "OrvelCore/Geometry.h"

namespace OrvelCore {

/// The window server's number of a window, of this or of another program. On X11 that of the root
/// window's child, which is the frame if there is one.
using WindowID = std::int64_t;

/// A window as the window server describes it. Lists of windows are frontmost first.
struct WindowInfo {
    WindowID number = 0;
    /// 0 if unknown.
    std::int64_t ownerPID = 0;
    /// The window level; 0 is that of ordinary windows.
    std::int64_t layer = 0;
    /// In window-server coordinates.
    Rect bounds;
    bool operator==(const WindowInfo&) const = default;
};

}  // namespace OrvelCore
