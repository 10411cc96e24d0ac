#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelLock/DisplayInfo.h"

namespace OrvelLock {

struct CardPlacement {
    /// The display that carries the card: `current` for as long as it exists, otherwise the one
    /// under the pointer, otherwise the first. Nothing when there are no displays.
    static std::optional<std::uint32_t> display(std::optional<std::uint32_t> current,
                                                OrvelCore::Point pointer,
                                                const std::vector<DisplayInfo>& displays);
};

}  // namespace OrvelLock
