#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "OrvelCore/BlurIntensity.h"
#include "OrvelCore/RawValue.h"
#include "OrvelCore/SettingsStore.h"
#include "OrvelCore/Shortcut.h"

namespace OrvelCore {

/// How the whole-Mac lock covers the screen.
enum class LockStyle { frosted, ambient, solid };
constexpr std::array<std::string_view, 3> rawNames(LockStyle) {
    return {"frosted", "ambient", "solid"};
}

/// The colour laid over a blur; `automatic` follows the system's appearance.
enum class OverlayTint { automatic, light, dark };
constexpr std::array<std::string_view, 3> rawNames(OverlayTint) {
    return {"auto", "light", "dark"};
}

/// The user's choices; as made, those of a fresh install.
struct Preferences {
    /// User-perceived characters.
    static constexpr std::size_t awayMessageLimit = 60;

    LockStyle lockStyle = LockStyle::frosted;
    /// Blur radii, see `BlurIntensity`.
    int lockIntensity = BlurIntensity::unreadable;
    int quickBlurIntensity = BlurIntensity::unreadable;
    int focusBlurIntensity = BlurIntensity::unreadable;
    OverlayTint tint = OverlayTint::automatic;
    bool showsClock = true;
    /// Text on the lock card; empty for none.
    std::string awayMessage;
    /// A macOS unlock also ends the lock.
    bool unlocksWithMacOS = true;
    bool keepsDisplaysAwake = false;
    /// Holding Option over a blurred app peeks.
    bool peekWithOption = true;
    bool showsMenuBarIcon = true;
    bool soundsOn = false;
    ShortcutSet shortcuts;

    /// Trims and clamps; a missing or unreadable value gives the field's default.
    static Preferences load(const SettingsStore& store);
    /// Writes every field as it stands.
    void save(SettingsStore& store) const;

    bool operator==(const Preferences&) const = default;
};

}  // namespace OrvelCore
