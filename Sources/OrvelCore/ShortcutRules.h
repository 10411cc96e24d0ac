#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "OrvelCore/Shortcut.h"

namespace OrvelCore {

/// The version of macOS; all 0 on other systems.
struct OSVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
    bool operator==(const OSVersion&) const = default;
};

/// The alternatives of `ShortcutCheck`.
namespace ShortcutChecks {

/// The shortcut is allowed; the message tells the user what else uses it.
struct Warning {
    std::string message;
    bool operator==(const Warning&) const = default;
};
struct Refused {
    std::string message;
    bool operator==(const Refused&) const = default;
};
struct Ok {
    bool operator==(const Ok&) const = default;
};

}  // namespace ShortcutChecks

using ShortcutCheck =
    std::variant<ShortcutChecks::Warning, ShortcutChecks::Refused, ShortcutChecks::Ok>;

/// A combination that desktops or other programs use.
struct ReservedShortcut {
    std::uint32_t keyCode = 0;
    Shortcut::Modifiers modifiers;
    /// A full sentence for the user that names what uses the combination.
    std::string_view message;
};

/// Which shortcuts the user may record. The defaults are not checked, so a new installation can use
/// Command-L.
namespace ShortcutRules {

/// The combinations that macOS and its programs use.
std::span<const ReservedShortcut> reservedOnMacOS();
/// Checks `shortcut` as the new shortcut of `action` in `set`. Labels are ignored. `reserved` lists
/// the combinations that cause a warning; the first match applies.
ShortcutCheck check(const Shortcut& shortcut, ShortcutSet::Action action, const ShortcutSet& set,
                    const OSVersion& osVersion,
                    std::span<const ReservedShortcut> reserved = reservedOnMacOS());
/// The label of a key; `characters` is what the key typed. `nullopt` if it typed nothing or several
/// characters.
std::optional<std::string> label(std::uint32_t keyCode,
                                 const std::optional<std::string>& characters);

}  // namespace ShortcutRules

}  // namespace OrvelCore
