#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "OrvelCore/Shortcut.h"

namespace OrvelCore {

/// Of macOS; all 0 on any other system.
struct OSVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
    bool operator==(const OSVersion&) const = default;
};

/// The cases of `ShortcutCheck`.
namespace ShortcutChecks {

/// May be used; the user is told what else uses it.
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
    /// A whole sentence for the user; says what uses the combination.
    std::string_view message;
};

/// What may be recorded. Defaults are never judged, so a fresh install carries Command-L.
namespace ShortcutRules {

/// The combinations that macOS and the programs on it use.
std::span<const ReservedShortcut> reservedOnMacOS();
/// Judges `shortcut` as the new one of `action` in `set`. Labels play no part in it. `reserved`
/// holds the combinations to warn of; the first row that fits counts.
ShortcutCheck check(const Shortcut& shortcut, ShortcutSet::Action action, const ShortcutSet& set,
                    const OSVersion& osVersion,
                    std::span<const ReservedShortcut> reserved = reservedOnMacOS());
/// The label of a key; `characters` is what it typed. Nothing when it has none, or several.
std::optional<std::string> label(std::uint32_t keyCode,
                                 const std::optional<std::string>& characters);

}  // namespace ShortcutRules

}  // namespace OrvelCore
