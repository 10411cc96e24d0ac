#pragma once

#include <optional>
#include <string_view>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelSystem {

/// Whether the user wants sounds from programs at all.
struct InterfaceSounds {
    /// Of the setting: an integer, 0 for no sounds.
    static constexpr std::string_view key = "com.apple.sound.uiaudio.enabled";

    /// What the user has set; true until it is known, and where nobody says so. Main thread only.
    static bool enabled();
    /// The same from the settings that all programs share; nothing for no settings.
    static bool enabled(const std::optional<PropertyValue::Dictionary>& globalDomain);
};

}  // namespace OrvelSystem
