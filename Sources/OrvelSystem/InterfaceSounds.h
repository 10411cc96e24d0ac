#pragma once

#include <optional>
#include <string_view>

#include "OrvelSystem/PropertyValue.h"

namespace OrvelSystem {

/// Whether the user has enabled sound effects of programs.
struct InterfaceSounds {
    /// Key of the setting: an integer, where 0 disables sounds.
    static constexpr std::string_view key = "com.apple.sound.uiaudio.enabled";

    /// The user's setting; true until it has been read, and if the system does not provide it. Main
    /// thread only.
    static bool enabled();
    /// Reads the setting from the settings that all programs share; `nullopt` if there are none.
    static bool enabled(const std::optional<PropertyValue::Dictionary>& globalDomain);
};

}  // namespace OrvelSystem
