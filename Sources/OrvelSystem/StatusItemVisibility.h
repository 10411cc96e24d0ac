#pragma once

#include <optional>

#include "OrvelCore/WindowInfo.h"
#include "OrvelSystem/PropertyValue.h"

namespace OrvelSystem {

/// Whether the status item is visible. `nullopt` means unknown; false means that the system does
/// not show it.
struct StatusItemVisibility {
    /// `windowNumber` identifies the item's window. It is ignored on Linux, where a panel draws the
    /// item.
    static std::optional<bool> isShown(OrvelCore::WindowID windowNumber);
    /// Reads the window server's description of the item's window; `nullopt` if there is none.
    static std::optional<bool> isShown(const std::optional<PropertyValue::Dictionary>& windowInfo);
};

}  // namespace OrvelSystem
