#pragma once

#include <cstdint>

#include "OrvelCore/Geometry.h"

namespace OrvelCore {

/// One window as the window server tells of it. Lists of windows run front-most first.
struct WindowInfo {
    std::int64_t number = 0;
    std::int64_t ownerPID = 0;
    /// On the scale of window levels; 0 is the layer of ordinary windows.
    std::int64_t layer = 0;
    Rect bounds;
    bool operator==(const WindowInfo&) const = default;
};

}  // namespace OrvelCore
