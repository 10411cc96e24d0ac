#pragma once

#include <optional>

#include "OrvelCore/WindowInfo.h"
#include "OrvelSystem/PropertyValue.h"

namespace OrvelSystem {

/// Parses one entry of the window list of the macOS window server.
struct WindowDescription {
    /// `nullopt` if the number, the owner, the layer or the bounds are missing or have the wrong
    /// type.
    static std::optional<OrvelCore::WindowInfo> windowInfo(const PropertyValue::Dictionary& entry);
    /// Whether the window is on the screen; `nullopt` if the entry has no such number or truth
    /// value.
    static std::optional<bool> isOnScreen(const PropertyValue::Dictionary& entry);
};

}  // namespace OrvelSystem
