#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "OrvelUI/Form.h"
#include "OrvelUI/SettingsModel.h"
#include "OrvelUI/SettingsText.h"

/// Rows that several panes use.
namespace OrvelUI::FormParts {

FormRow preferenceSwitch(PreferencesModel& model, std::string id, std::string label,
                         bool OrvelCore::Preferences::*field);
/// If the current value is not among the choices, it is kept and no choice is marked.
FormRow durationChoice(PreferencesModel& model, std::string id, std::string label,
                       std::span<const SettingsText::DurationChoice> choices,
                       std::optional<double> OrvelCore::TriggerSettings::*field);
/// With `allowsReadable`, the slider extends below the tick at which text becomes unreadable.
FormRow intensitySlider(PreferencesModel& model, std::string id, std::string label,
                        int OrvelCore::Preferences::*field, bool allowsReadable);
FormRow appRow(const AppRow& app, std::string idPrefix, FormButton button);

/// A row with a single button; with an empty `label` the button is at the start of the row.
FormRow buttonRow(std::string id, std::string label, FormButton button);
FormRow textRow(std::string id, std::string text);

}  // namespace OrvelUI::FormParts
