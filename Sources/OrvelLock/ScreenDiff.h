#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelLock {

/// How to change the surfaces after a change of displays. The lists hold display numbers in
/// ascending order.
struct ScreenDiff {
    std::vector<std::uint32_t> add;
    std::vector<std::uint32_t> remove;
    std::vector<std::uint32_t> reframe;
    bool operator==(const ScreenDiff&) const = default;

    /// Both maps contain frames in window-server coordinates by display number.
    static ScreenDiff plan(const std::map<std::uint32_t, OrvelCore::Rect>& existing,
                           const std::map<std::uint32_t, OrvelCore::Rect>& current);
};

}  // namespace OrvelLock
