#include <fmt/format.h>

#include "OrvelUI/AccessibilityText.h"
#include "OrvelUI/FormParts.h"
#include "OrvelUI/SettingsPanes.h"

namespace OrvelUI {

namespace {

using Action = PreferencesModel::Action;

FormRow recorderRow(PreferencesModel& model, Action action) {
    const std::string name(OrvelCore::title(action));
    const auto& shortcut = model.prefs.get().shortcuts[action];
    FormRow row{.id = "shortcut:" + std::string(OrvelCore::rawValue(action)),
                .label = {.text = name}};
    RowActions actions;
    if (model.recording.get() == action) {
        actions.text = "Press the keys…";
        actions.buttons.push_back({.title = "Cancel",
                                   .accessibleName = fmt::format("Cancel, {}", name),
                                   .press = [&model] { model.onStopRecording(); }});
    } else {
        if (shortcut) {
            actions.keycaps = PulsingKeycaps{.keycaps = {.caps = shortcut->keycaps()}};
            actions.buttons.push_back(
                {.title = "Clear",
                 .hint = AccessibilityText::clearShortcut,
                 .kind = FormButton::Kind::symbol,
                 .symbol = "xmark.circle.fill",
                 .accessibleName = fmt::format("Clear, {}", name),
                 .press = [&model, action] { model.onClearShortcut(action); }});
        } else {
            actions.text = "None";
        }
        actions.buttons.push_back({.title = "Record",
                                   .hint = AccessibilityText::record,
                                   .accessibleName = fmt::format("Record, {}", name),
                                   .press = [&model, action] { model.onRecord(action); }});
    }
    row.control = std::move(actions);
    const auto& notes = model.shortcutNotes.get();
    if (const auto note = notes.find(action); note != notes.end())
        row.note = SettingsNote{.text = note->second,
                                .warning = model.refusedNotes.get().contains(action)};
    return row;
}

}  // namespace

FormContent SettingsPanes::shortcuts(PreferencesModel& model) {
    if (!model.capabilities.shortcuts)
        return {.sections = {
                    {.id = "noShortcuts",
                     .rows = {FormParts::textRow("noShortcuts", SettingsText::noShortcuts())}}}};
    FormSection section{
        .id = "shortcuts",
        .intro = "Click Record, then press the keys. Esc cancels, Delete removes the shortcut."};
    for (const auto action : OrvelCore::allCases<Action>())
        section.rows.push_back(recorderRow(model, action));
    return {.sections = {std::move(section)}};
}

}  // namespace OrvelUI
