#include "OrvelSystem/WindowDescription.h"

#include <cmath>
#include <string_view>

namespace OrvelSystem {

namespace {

const PropertyValue* find(const PropertyValue::Dictionary& entry, std::string_view key) {
    const auto found = entry.find(key);
    return found == entry.end() ? nullptr : &found->second;
}

std::optional<double> number(const PropertyValue* value) {
    if (value == nullptr) return {};
    if (const auto* const whole = value->get<std::int64_t>()) return static_cast<double>(*whole);
    if (const auto* const real = value->get<double>()) return *real;
    return {};
}

std::optional<std::int64_t> integer(const PropertyValue* value) {
    const auto found = number(value);
    // Window numbers and process IDs are far below 2^53, so a double holds them exactly.
    if (!found || !(std::abs(*found) < 1e15)) return {};
    return static_cast<std::int64_t>(*found);
}

}  // namespace

std::optional<OrvelCore::WindowInfo> WindowDescription::windowInfo(
    const PropertyValue::Dictionary& entry) {
    const auto window = integer(find(entry, "kCGWindowNumber"));
    const auto owner = integer(find(entry, "kCGWindowOwnerPID"));
    const auto layer = integer(find(entry, "kCGWindowLayer"));
    const auto* const value = find(entry, "kCGWindowBounds");
    const auto* const bounds = value ? value->get<PropertyValue::Dictionary>() : nullptr;
    if (!window || !owner || !layer || !bounds) return {};
    const auto x = number(find(*bounds, "X"));
    const auto y = number(find(*bounds, "Y"));
    const auto width = number(find(*bounds, "Width"));
    const auto height = number(find(*bounds, "Height"));
    if (!x || !y || !width || !height) return {};
    return OrvelCore::WindowInfo{*window, *owner, *layer, {*x, *y, *width, *height}};
}

std::optional<bool> WindowDescription::isOnScreen(const PropertyValue::Dictionary& entry) {
    const auto* const value = find(entry, "kCGWindowIsOnscreen");
    if (value == nullptr) return {};
    if (const auto* const flag = value->get<bool>()) return *flag;
    const auto found = number(value);
    if (!found) return {};
    return *found != 0;
}

}  // namespace OrvelSystem
