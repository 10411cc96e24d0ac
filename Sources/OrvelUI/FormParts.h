#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "OrvelUI/Form.h"
#include "OrvelUI/SettingsModel.h"
#include "OrvelUI/SettingsText.h"

/// The rows that several panes are made of.
namespace OrvelUI::FormParts {

FormRow preferenceSwitch(PreferencesModel& model, std::string id, std::string label,
                         bool OrvelCore::Preferences::*field);
/// A value that is none of the choices leaves all of them unchosen, and stands.
FormRow durationChoice(PreferencesModel& model, std::string id, std::string label,
                       std::span<const SettingsText::DurationChoice> choices,
                       std::optional<double> OrvelCore::TriggerSettings::*field);
/// Where text may stay readable, the slider goes below the tick that says so.
FormRow intensitySlider(PreferencesModel& model, std::string id, std::string label,
                        int OrvelCore::Preferences::*field, bool allowsReadable);
FormRow appRow(const AppRow& app, std::string idPrefix, FormButton button);

/// A button alone in its row, after a label or at the row's start.
FormRow buttonRow(std::string id, std::string label, FormButton button);
FormRow textRow(std::string id, std::string text);

}  // namespace OrvelUI::FormParts
