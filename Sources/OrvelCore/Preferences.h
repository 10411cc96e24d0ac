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

/// How the lock of the whole Mac covers the screen.
enum class LockStyle { frosted, ambient, solid };
constexpr std::array<std::string_view, 3> rawNames(LockStyle) {
    return {"frosted", "ambient", "solid"};
}

/// The colour of an overlay's tint; `automatic` follows the system's appearance.
enum class OverlayTint { automatic, light, dark };
constexpr std::array<std::string_view, 3> rawNames(OverlayTint) {
    return {"auto", "light", "dark"};
}

/// The user's preferences. A default-constructed object has the defaults of a new installation.
struct Preferences {
    /// In user-perceived characters.
    static constexpr std::size_t awayMessageLimit = 60;

    LockStyle lockStyle = LockStyle::frosted;
    /// Blur radii in points, see `BlurIntensity`.
    int lockIntensity = BlurIntensity::unreadable;
    int quickBlurIntensity = BlurIntensity::unreadable;
    int focusBlurIntensity = BlurIntensity::unreadable;
    OverlayTint tint = OverlayTint::automatic;
    bool showsClock = true;
    /// Text on the lock card; empty for none.
    std::string awayMessage;
    /// Whether an unlock of macOS also ends the lock.
    bool unlocksWithMacOS = true;
    bool keepsDisplaysAwake = false;
    /// Whether holding Option over a covered app reveals it.
    bool peekWithOption = true;
    bool showsMenuBarIcon = true;
    bool soundsOn = false;
    ShortcutSet shortcuts;

    /// Trims and clamps values. A missing or unreadable value gives the field's default.
    static Preferences load(const SettingsStore& store);
    /// Writes every field unchanged.
    void save(SettingsStore& store) const;

    bool operator==(const Preferences&) const = default;
};

}  // namespace OrvelCore
