#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/RawValue.h"

namespace OrvelCore {

/// A key with modifiers, used as a global shortcut.
struct Shortcut {
    /// A set of flags. Unknown bits are kept, since stored text is not validated.
    struct Modifiers {
        std::int64_t rawValue = 0;

        static const Modifiers command;
        static const Modifiers option;
        static const Modifiers control;
        static const Modifiers shift;

        constexpr bool isEmpty() const { return rawValue == 0; }
        constexpr bool contains(Modifiers other) const {
            return (rawValue & other.rawValue) == other.rawValue;
        }
        constexpr bool intersects(Modifiers other) const {
            return (rawValue & other.rawValue) != 0;
        }
        constexpr Modifiers operator|(Modifiers other) const { return {rawValue | other.rawValue}; }
        constexpr Modifiers& operator|=(Modifiers other) { return *this = *this | other; }
        constexpr bool operator==(const Modifiers&) const = default;
    };

    /// The virtual key code of the Mac keyboard, which identifies a position, not a letter.
    std::uint32_t keyCode = 0;
    /// The key's label that the user sees, such as "L" or "Space".
    std::string key;
    Modifiers modifiers;

    /// The defaults of a new installation: Command-L and Option-Command-L.
    static Shortcut lockMac();
    static Shortcut lockApp();

    /// The format "{key code}:{modifiers}:{key}", such as "37:1:L".
    std::string stored() const;
    /// Parses the format of `stored`; `nullopt` for any other text. Modifier bits are not
    /// validated.
    static std::optional<Shortcut> fromStored(std::string_view text);

    /// One string per keycap: the modifiers in a fixed order, then the key.
    std::vector<std::string> keycaps() const;
    /// The keycaps joined, such as "⌥⌘L".
    std::string display() const;

    bool operator==(const Shortcut&) const = default;
};

inline constexpr Shortcut::Modifiers Shortcut::Modifiers::command{1};
inline constexpr Shortcut::Modifiers Shortcut::Modifiers::option{2};
inline constexpr Shortcut::Modifiers Shortcut::Modifiers::control{4};
inline constexpr Shortcut::Modifiers Shortcut::Modifiers::shift{8};

/// The shortcuts of the four actions that can have one; `nullopt` for an action without one.
struct ShortcutSet {
    enum class Action { lockMac, lockApp, quickBlur, focusBlur };

    std::optional<Shortcut> lockMac = Shortcut::lockMac();
    std::optional<Shortcut> lockApp = Shortcut::lockApp();
    std::optional<Shortcut> quickBlur;
    std::optional<Shortcut> focusBlur;

    std::optional<Shortcut>& operator[](Action action);
    const std::optional<Shortcut>& operator[](Action action) const;

    bool operator==(const ShortcutSet&) const = default;
};

constexpr std::array<std::string_view, 4> rawNames(ShortcutSet::Action) {
    return {"lockMac", "lockApp", "quickBlur", "focusBlur"};
}
/// The name of the action that the user sees.
std::string_view title(ShortcutSet::Action action);

}  // namespace OrvelCore
