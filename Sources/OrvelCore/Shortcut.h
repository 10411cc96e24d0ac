#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/RawValue.h"

namespace OrvelCore {

/// One key with modifiers, as a global shortcut.
struct Shortcut {
    /// A set of flags. Bits that mean nothing are kept, since stored text is taken as it stands.
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

    /// Hardware virtual key code of the Mac keyboard: a position, not a letter.
    std::uint32_t keyCode = 0;
    /// The key's label as the user sees it, such as "L" or "Space".
    std::string key;
    Modifiers modifiers;

    /// What a fresh install carries: Command-L and Option-Command-L.
    static Shortcut lockMac();
    static Shortcut lockApp();

    /// "{key code}:{modifiers}:{key}", such as "37:1:L".
    std::string stored() const;
    /// Nothing for any other text. Modifier bits are not validated.
    static std::optional<Shortcut> fromStored(std::string_view text);

    /// One string per cap: the modifiers in their fixed order, then the key.
    std::vector<std::string> keycaps() const;
    /// The caps joined, such as "⌥⌘L".
    std::string display() const;

    bool operator==(const Shortcut&) const = default;
};

inline constexpr Shortcut::Modifiers Shortcut::Modifiers::command{1};
inline constexpr Shortcut::Modifiers Shortcut::Modifiers::option{2};
inline constexpr Shortcut::Modifiers Shortcut::Modifiers::control{4};
inline constexpr Shortcut::Modifiers Shortcut::Modifiers::shift{8};

/// The shortcuts of the four actions that can have one.
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
/// The action as the user reads it.
std::string_view title(ShortcutSet::Action action);

}  // namespace OrvelCore
