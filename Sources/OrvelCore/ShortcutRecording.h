#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "OrvelCore/ShortcutRules.h"

namespace OrvelCore {

/// The alternatives of `RecorderDecision`.
namespace RecorderDecisions {

struct Record {
    Shortcut shortcut;
    bool operator==(const Record&) const = default;
};
struct Cancel {
    bool operator==(const Cancel&) const = default;
};
struct Clear {
    bool operator==(const Clear&) const = default;
};
/// The key has no effect; recording continues.
struct Ignore {
    bool operator==(const Ignore&) const = default;
};

}  // namespace RecorderDecisions

/// The meaning of a key press while a shortcut is being recorded.
using RecorderDecision = std::variant<RecorderDecisions::Record, RecorderDecisions::Cancel,
                                      RecorderDecisions::Clear, RecorderDecisions::Ignore>;

namespace ShortcutRecording {

/// `characters` is what the key typed; `nullopt` if it typed nothing.
RecorderDecision decide(std::uint32_t keyCode, Shortcut::Modifiers modifiers,
                        const std::optional<std::string>& characters);

}  // namespace ShortcutRecording

namespace ShortcutEditor {

struct Result {
    ShortcutSet set;
    /// A message for the user; `nullopt` if there is none.
    std::optional<std::string> note;
    /// Whether `set` must be saved.
    bool saved = false;
    bool operator==(const Result&) const = default;
};

/// Applies a decision to the shortcut of `action`. `reserved` is passed to `ShortcutRules::check`.
Result apply(const RecorderDecision& decision, ShortcutSet::Action action, const ShortcutSet& set,
             const OSVersion& osVersion,
             std::span<const ReservedShortcut> reserved = ShortcutRules::reservedOnMacOS());

}  // namespace ShortcutEditor

}  // namespace OrvelCore
