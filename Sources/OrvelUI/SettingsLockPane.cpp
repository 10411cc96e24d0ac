#include <algorithm>

#include <fmt/format.h>

#include "OrvelCore/AttemptText.h"
#include "OrvelCore/Brand.h"
#include "OrvelUI/AccessibilityText.h"
#include "OrvelUI/FormParts.h"
#include "OrvelUI/SettingsPanes.h"

namespace OrvelUI {

using OrvelCore::LockStyle;
using OrvelCore::Preferences;
using OrvelCore::TriggerSettings;

namespace {

constexpr std::size_t shownAttempts = 8;

FormSection style(PreferencesModel& model, const SettingsTheme& theme) {
    const auto& prefs = model.prefs.get();
    StyleThumbnails thumbnails;
    for (const auto lockStyle : OrvelCore::allCases<LockStyle>()) {
        auto shown = prefs;
        shown.lockStyle = lockStyle;
        // The thumbnail shows the style itself, even if the desktop requests less transparency.
        const bool isDark = theme.scheme == SettingsTheme::Scheme::dark;
        thumbnails.styles.push_back(
            {.title = std::string(SettingsText::styleTitle(lockStyle)),
             .detail = std::string(SettingsText::styleDetail(lockStyle)),
             .look = OrvelCore::Looks::lock(shown, false, isDark),
             .showsClock = prefs.showsClock,
             .chosen = prefs.lockStyle == lockStyle,
             .choose = [&model, lockStyle] { model.change(&Preferences::lockStyle, lockStyle); }});
    }
    FormSection section{.id = "style",
                        .title = "Style",
                        .rows = {{.id = "lockStyle", .control = std::move(thumbnails)}}};
    if (prefs.lockStyle != LockStyle::solid) {
        auto blur = FormParts::intensitySlider(model, "lockIntensity", "Blur",
                                               &Preferences::lockIntensity, false);
        blur.note =
            SettingsNote{.text = "Never softer than the point where text becomes unreadable."};
        section.rows.push_back(std::move(blur));
    }
    section.rows.push_back(FormParts::buttonRow("preview", {},
                                                {.title = "Preview Lock",
                                                 .hint = AccessibilityText::previewLock,
                                                 .press = [&model] { model.onPreviewLock(); }}));
    return section;
}

FormSection screen(PreferencesModel& model) {
    FormRow message{.id = "awayMessage",
                    .label = {.text = "Away message"},
                    .control = TextField{
                        .text = model.prefs.get().awayMessage,
                        .prompt = "Back at 3:30",
                        .type = [&model](const auto& text) { return model.typeAwayMessage(text); },
                        .finish = [&model] { model.finishAwayMessage(); }}};
    return {.id = "screen",
            .title = "Lock screen",
            .rows = {FormParts::preferenceSwitch(model, "showsClock", "Show the clock",
                                                 &Preferences::showsClock),
                     std::move(message)}};
}

FormSection handOff(PreferencesModel& model) {
    FormSection section{.id = "handOff", .title = "Hand-off to the macOS lock"};
    section.rows.push_back(FormParts::durationChoice(model, "handOffAfter", "Also lock macOS after",
                                                     SettingsText::handOffChoices(),
                                                     &TriggerSettings::handOffAfter));
    if (model.systemUnlockIsProven)
        section.rows.push_back(FormParts::preferenceSwitch(
            model, "unlocksWithMacOS",
            fmt::format("Unlock {} when my Mac unlocks", OrvelCore::Brand::name),
            &Preferences::unlocksWithMacOS));
    section.rows.push_back(FormParts::preferenceSwitch(model, "keepsDisplaysAwake",
                                                       "Keep displays awake while locked",
                                                       &Preferences::keepsDisplaysAwake));
    return section;
}

FormSection attempts(const PreferencesModel& model) {
    FormSection section{.id = "attempts", .title = "Failed attempts"};
    const auto& dates = model.attempts.get();
    for (std::size_t i = 0; i < std::min(dates.size(), shownAttempts); ++i)
        section.rows.push_back(FormParts::textRow(
            fmt::format("attempt:{}", i),
            OrvelCore::AttemptText::historyLine(dates[i], model.now.get(), model.locale.get(),
                                                model.timeZone.get())));
    if (dates.empty())
        section.rows.push_back(
            {.id = "none",
             .label = {.text = "No wrong passwords in the last 30 days.", .role = TextRole::note}});
    if (dates.size() > shownAttempts)
        section.notes.push_back({.text = fmt::format("And {} more in the last 30 days.",
                                                     dates.size() - shownAttempts)});
    return section;
}

}  // namespace

FormContent SettingsPanes::lock(PreferencesModel& model, const SettingsTheme& theme) {
    FormContent content{
        .sections = {style(model, theme), screen(model), handOff(model), attempts(model)}};
    if (!model.passwordSuffices.get())
        content.sections.insert(
            content.sections.begin(),
            {.id = "noLock",
             .rows = {FormParts::textRow("noLock", SettingsText::noPasswordField())}});
    return content;
}

}  // namespace OrvelUI
