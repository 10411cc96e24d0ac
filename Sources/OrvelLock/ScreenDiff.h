#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelLock {

/// What to do to the surfaces when the display set changed. Display numbers, each list ascending.
struct ScreenDiff {
    std::vector<std::uint32_t> add;
    std::vector<std::uint32_t> remove;
    std::vector<std::uint32_t> reframe;
    bool operator==(const ScreenDiff&) const = default;

    static ScreenDiff plan(const std::map<std::uint32_t, OrvelCore::Rect>& existing,
                           const std::map<std::uint32_t, OrvelCore::Rect>& current);
};

}  // namespace OrvelLock
