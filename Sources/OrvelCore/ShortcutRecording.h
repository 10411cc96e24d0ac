#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "OrvelCore/ShortcutRules.h"

namespace OrvelCore {

/// The cases of `RecorderDecision`.
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
/// The key means nothing; recording goes on.
struct Ignore {
    bool operator==(const Ignore&) const = default;
};

}  // namespace RecorderDecisions

/// What one key press means while a shortcut is being recorded.
using RecorderDecision = std::variant<RecorderDecisions::Record, RecorderDecisions::Cancel,
                                      RecorderDecisions::Clear, RecorderDecisions::Ignore>;

namespace ShortcutRecording {

RecorderDecision decide(std::uint32_t keyCode, Shortcut::Modifiers modifiers,
                        const std::optional<std::string>& characters);

}  // namespace ShortcutRecording

namespace ShortcutEditor {

struct Result {
    ShortcutSet set;
    /// What to tell the user; nothing when there is nothing to say.
    std::optional<std::string> note;
    /// Whether `set` is to be kept.
    bool saved = false;
    bool operator==(const Result&) const = default;
};

/// Carries a decision out on the shortcut of `action`. `reserved` is that of
/// `ShortcutRules::check`.
Result apply(const RecorderDecision& decision, ShortcutSet::Action action, const ShortcutSet& set,
             const OSVersion& osVersion,
             std::span<const ReservedShortcut> reserved = ShortcutRules::reservedOnMacOS());

}  // namespace ShortcutEditor

}  // namespace OrvelCore
