#pragma once

#include <optional>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelSystem {

/// Whether the user wants sounds from programs at all.
struct InterfaceSounds {
    /// What the user has set; true until it is known, and where nobody says so. Main thread only.
    static bool enabled();
    /// The same from the settings that all programs share; nothing for no settings.
    static bool enabled(const std::optional<PropertyValue::Dictionary>& globalDomain);
};

}  // namespace OrvelSystem
