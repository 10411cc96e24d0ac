#pragma once

#include <cstdint>
#include <optional>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelSystem {

/// Whether the status item can be seen. Nothing means that it cannot be told, false that the
/// system does not show it.
struct StatusItemVisibility {
    /// `windowNumber` is that of the item's window; where a panel draws the item, it has none and
    /// the number is not looked at.
    static std::optional<bool> isShown(std::int64_t windowNumber);
    /// From the window server's description of the item's window, nothing when there is none.
    static std::optional<bool> isShown(const std::optional<PropertyValue::Dictionary>& windowInfo);
};

}  // namespace OrvelSystem
