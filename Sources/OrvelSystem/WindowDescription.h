#pragma once

#include <optional>

#include "OrvelCore/WindowInfo.h"
#include "OrvelSystem/PropertyValue.h"

namespace OrvelSystem {

/// One entry of the window list that the macOS window server gives.
struct WindowDescription {
    /// Nothing when the number, the owner, the layer or the bounds are missing or of another type.
    static std::optional<OrvelCore::WindowInfo> windowInfo(const PropertyValue::Dictionary& entry);
    /// Whether the window is on the screen. Nothing when the entry does not say so with a number.
    static std::optional<bool> isOnScreen(const PropertyValue::Dictionary& entry);
};

}  // namespace OrvelSystem
