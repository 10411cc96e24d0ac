#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelLock/DisplayInfo.h"

namespace OrvelLock {

struct CardPlacement {
    /// Chooses the display for the card: `current` while it is connected, otherwise the display
    /// under `pointer` (window-server coordinates), otherwise the first one. `nullopt` without
    /// displays.
    static std::optional<std::uint32_t> display(std::optional<std::uint32_t> current,
                                                OrvelCore::Point pointer,
                                                const std::vector<DisplayInfo>& displays);
};

}  // namespace OrvelLock
