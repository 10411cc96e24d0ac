#include "OrvelCore/HotCorner.h"

#include <array>
#include <string_view>
#include <utility>

namespace OrvelCore::HotCorner {

using Corner = TriggerSettings::Corner;

Rect rect(Corner corner, const Rect& display) {
    const bool isLeft = corner == Corner::topLeft || corner == Corner::bottomLeft;
    const bool isTop = corner == Corner::topLeft || corner == Corner::topRight;
    return {isLeft ? display.x : display.maxX() - 1, isTop ? display.y : display.maxY() - 1, 1, 1};
}

std::set<Corner> cornersMacOSUses(const SettingsStore& dock) {
    constexpr std::array<std::pair<std::string_view, Corner>, 4> keys = {{
        {"wvous-tl-corner", Corner::topLeft},
        {"wvous-tr-corner", Corner::topRight},
        {"wvous-bl-corner", Corner::bottomLeft},
        {"wvous-br-corner", Corner::bottomRight},
    }};
    // The Dock stores 0 or 1 for a corner without an action.
    constexpr int lastIdleAction = 1;
    std::set<Corner> used;
    for (const auto& [key, corner] : keys) {
        if (dock.integerForKey(key).value_or(0) > lastIdleAction) used.insert(corner);
    }
    return used;
}

}  // namespace OrvelCore::HotCorner
