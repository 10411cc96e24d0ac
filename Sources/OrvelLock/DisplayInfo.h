#pragma once

#include <cstdint>
#include <optional>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/NotchMetrics.h"

namespace OrvelLock {

struct DisplayInfo {
    /// The display's number, which does not change while the display stays connected.
    std::uint32_t id = 0;
    /// In window-server coordinates.
    OrvelCore::Rect frame;
    /// `nullopt` on a display without a camera notch.
    std::optional<OrvelUI::NotchMetrics> notch;
    bool operator==(const DisplayInfo&) const = default;
};

}  // namespace OrvelLock
