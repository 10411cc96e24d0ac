#include "OrvelUI/SettingsModel.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelUI {

namespace Text = OrvelCore::Text;
using OrvelCore::Preferences;
using OrvelCore::TriggerSettings;

namespace {

struct PaneNames {
    std::string_view title;
    std::string_view symbol;
};

const PaneNames& names(SettingsPane pane) {
    static constexpr PaneNames table[] = {{"General", "gearshape"}, {"Lock", "lock"},
                                          {"Blur", "drop"},         {"Private Apps", "hand.raised"},
                                          {"Shortcuts", "command"}, {"About", "info.circle"}};
    return table[static_cast<std::size_t>(pane)];
}

}  // namespace

std::string_view title(SettingsPane pane) {
    return names(pane).title;
}

std::string_view symbol(SettingsPane pane) {
    return names(pane).symbol;
}

PreferencesModel::PreferencesModel()
    : prefsObservation_(prefs.observe([this](const auto& changed) { onChange(changed); })),
      triggersObservation_(
          triggers.observe([this](const auto& changed) { onTriggersChange(changed); })) {}

void PreferencesModel::pick(Corner corner) {
    const bool isChosen = triggers.get().hotCorner == corner;
    change(&TriggerSettings::hotCorner, isChosen ? std::nullopt : std::optional(corner));
}

std::string PreferencesModel::typeAwayMessage(const std::string& typed) {
    constexpr auto limit = Preferences::awayMessageLimit;
    // Blanks at the ends are kept while the user types between words, unless the text is too long.
    std::string taken = Text::characterCount(typed) > limit
                            ? Text::firstCharacters(Text::trim(typed), limit)
                            : typed;
    change(&Preferences::awayMessage, taken);
    return taken;
}

void PreferencesModel::finishAwayMessage() {
    change(&Preferences::awayMessage, Text::trim(prefs.get().awayMessage));
}

std::string AboutPaneModel::privacy() {
    return fmt::format(
        "{} never records the screen, never reads the contents of windows, and goes online only to "
        "check for updates.",
        OrvelCore::Brand::name);
}

SettingsModel::SettingsModel()
    : paneObservation_(pane.observe([this](const auto&) { onPaneChange(); })) {}

std::vector<OrvelCore::Subscription> SettingsModel::observe(const std::function<void()>& changed) {
    std::vector<OrvelCore::Subscription> observations;
    const auto observe = [&](auto&... fields) {
        (observations.push_back(fields.observe([changed](const auto&) { changed(); })), ...);
    };
    observe(pane, about.version, about.icon, about.updateStatus, about.updateReady, about.checking,
            about.automaticChecks);
    auto& p = preferences;
    observe(p.prefs, p.triggers, p.launchAtLogin, p.offersLockBeforeSleep, p.passwordSuffices,
            p.attempts, p.now, p.locale, p.timeZone, p.macOSCorners, p.privateApps, p.addableApps,
            p.showsAddableApps, p.recording, p.shortcutNotes, p.refusedNotes);
    return observations;
}

}  // namespace OrvelUI
