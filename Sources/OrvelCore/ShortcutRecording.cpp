#include "OrvelCore/ShortcutRecording.h"

#include "OrvelCore/Match.h"

namespace OrvelCore {

namespace {

constexpr std::uint32_t deleteKey = 51;
constexpr std::uint32_t escapeKey = 53;
constexpr std::uint32_t forwardDeleteKey = 117;

}  // namespace

RecorderDecision ShortcutRecording::decide(std::uint32_t keyCode, Shortcut::Modifiers modifiers,
                                           const std::optional<std::string>& characters) {
    if (modifiers.isEmpty()) {
        if (keyCode == deleteKey || keyCode == forwardDeleteKey) return RecorderDecisions::Clear{};
        if (keyCode == escapeKey) return RecorderDecisions::Cancel{};
    }
    const auto label = ShortcutRules::label(keyCode, characters);
    if (!label) return RecorderDecisions::Ignore{};
    return RecorderDecisions::Record{{keyCode, *label, modifiers}};
}

ShortcutEditor::Result ShortcutEditor::apply(const RecorderDecision& decision,
                                             ShortcutSet::Action action, const ShortcutSet& set,
                                             const OSVersion& osVersion,
                                             std::span<const ReservedShortcut> reserved) {
    const Result unchanged{set, std::nullopt, false};
    const auto replaced = [&](const std::optional<Shortcut>& shortcut,
                              const std::optional<std::string>& note) {
        Result result{set, note, true};
        result.set[action] = shortcut;
        return result;
    };
    return match(
        decision, [&](const RecorderDecisions::Cancel&) { return unchanged; },
        [&](const RecorderDecisions::Ignore&) { return unchanged; },
        [&](const RecorderDecisions::Clear&) { return replaced(std::nullopt, std::nullopt); },
        [&](const RecorderDecisions::Record& record) {
            return match(
                ShortcutRules::check(record.shortcut, action, set, osVersion, reserved),
                [&](const ShortcutChecks::Refused& refused) {
                    return Result{set, refused.message, false};
                },
                [&](const ShortcutChecks::Warning& warning) {
                    return replaced(record.shortcut, warning.message);
                },
                [&](const ShortcutChecks::Ok&) { return replaced(record.shortcut, std::nullopt); });
        });
}

}  // namespace OrvelCore
