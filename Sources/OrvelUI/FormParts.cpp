#include "OrvelUI/FormParts.h"

#include <utility>

#include "OrvelCore/BlurIntensity.h"

namespace OrvelUI::FormParts {

using OrvelCore::Preferences;
using OrvelCore::TriggerSettings;
namespace BlurIntensity = OrvelCore::BlurIntensity;

FormRow preferenceSwitch(PreferencesModel& model, std::string id, std::string label,
                         bool Preferences::*field) {
    return {
        .id = std::move(id),
        .label = {.text = std::move(label)},
        .control = SettingsSwitch{.on = model.prefs.get().*field,
                                  .set = [&model, field](bool on) { model.change(field, on); }}};
}

FormRow durationChoice(PreferencesModel& model, std::string id, std::string label,
                       std::span<const SettingsText::DurationChoice> choices,
                       std::optional<double> TriggerSettings::*field) {
    ChoiceStrip strip;
    for (const auto& [value, title] : choices)
        strip.chips.push_back(
            {.title = std::string(title),
             .chosen = model.triggers.get().*field == value,
             .choose = [&model, field, seconds = value] { model.change(field, seconds); }});
    return {.id = std::move(id), .label = {.text = std::move(label)}, .control = std::move(strip)};
}

FormRow intensitySlider(PreferencesModel& model, std::string id, std::string label,
                        int Preferences::*field, bool allowsReadable) {
    IntensitySlider slider{
        .value = BlurIntensity::clamped(model.prefs.get().*field, allowsReadable),
        .lowest = allowsReadable ? BlurIntensity::range.lowest : BlurIntensity::unreadable,
        .highest = BlurIntensity::range.highest,
        .set = [&model, field](int value) { model.change(field, value); }};
    if (allowsReadable) slider.tick = BlurIntensity::unreadable;
    return {.id = std::move(id), .label = {.text = std::move(label)}, .control = std::move(slider)};
}

FormRow appRow(const AppRow& app, std::string idPrefix, FormButton button) {
    return {.id = std::move(idPrefix) + app.id,
            .icon = app.icon,
            .label = {.text = app.name, .verbatim = true},
            .control = RowActions{.buttons = {std::move(button)}}};
}

FormRow buttonRow(std::string id, std::string label, FormButton button) {
    return {.id = std::move(id),
            .label = {.text = std::move(label)},
            .control = RowActions{.buttons = {std::move(button)}}};
}

FormRow textRow(std::string id, std::string text) {
    return {.id = std::move(id), .label = {.text = std::move(text)}};
}

}  // namespace OrvelUI::FormParts
