#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/Shortcut.h"

namespace OrvelCore {

/// One key combination in sway's terms.
struct SwayKeys {
    /// Names of modifiers as in `swayModifiers`.
    std::set<std::string> modifiers;
    /// Names of keys in lower case, or X keycodes such as "code 46".
    std::set<std::string> keys;

    bool operator==(const SwayKeys&) const = default;
};

/// The names that sway has for the modifiers, each in one spelling: "Shift", "Ctrl", "Mod1",
/// "Mod4".
std::set<std::string> swayModifiers(Shortcut::Modifiers modifiers);

/// The key combinations that a configuration of sway binds in its default mode.
struct SwayBindings {
    std::vector<SwayKeys> bound;
    /// False if a part of the configuration could not be read, so that any combination may be
    /// bound.
    bool isComplete = true;

    /// Whether the combination is bound, or may be. A key is bound if either its name or its
    /// keycode is.
    bool mayHave(const std::set<std::string>& modifiers, std::string_view keyName,
                 std::uint32_t xKeycode) const;
};

/// The texts of the files that the path of an "include" line names, in their order; `nullopt` if
/// the path cannot be resolved or a file cannot be read.
using SwayInclude = std::function<std::optional<std::vector<std::string>>(const std::string& path)>;

/// Parses the text of a configuration.
SwayBindings swayBindings(std::string_view config, const SwayInclude& include);

}  // namespace OrvelCore
