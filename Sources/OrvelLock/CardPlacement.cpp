#include "OrvelLock/CardPlacement.h"

#include <algorithm>

namespace OrvelLock {

std::optional<std::uint32_t> CardPlacement::display(std::optional<std::uint32_t> current,
                                                    OrvelCore::Point pointer,
                                                    const std::vector<DisplayInfo>& displays) {
    if (current && std::ranges::find(displays, *current, &DisplayInfo::id) != displays.end())
        return current;
    if (displays.empty()) return std::nullopt;
    const auto pointed = std::ranges::find_if(
        displays, [&](const DisplayInfo& display) { return display.frame.contains(pointer); });
    return pointed == displays.end() ? displays.front().id : pointed->id;
}

}  // namespace OrvelLock
