#include "OrvelSystem/StatusItemVisibility.h"

namespace OrvelSystem {

std::optional<bool> StatusItemVisibility::isShown(
    const std::optional<PropertyValue::Dictionary>& windowInfo) {
    if (!windowInfo) return {};
    const auto entry = windowInfo->find("kCGWindowIsOnscreen");
    if (entry == windowInfo->end()) return false;
    const bool* const onScreen = entry->second.get<bool>();
    return onScreen && *onScreen;
}

}  // namespace OrvelSystem
