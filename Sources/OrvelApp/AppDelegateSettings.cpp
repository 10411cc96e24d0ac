#include <algorithm>

#include <fmt/format.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/Brand.h"
#include "OrvelCore/RawValue.h"
#include "OrvelCore/Text.h"

namespace OrvelApp {

using namespace OrvelCore;
using Action = ShortcutSet::Action;

namespace {

constexpr auto takenNote = "Another app already uses this shortcut, so it does nothing here.";

/// Sets the note beside a shortcut; `nullopt` removes it. `refused` means that the note reports
/// that nothing was saved.
void setNote(OrvelUI::PreferencesModel& model, Action action,
             const std::optional<std::string>& note, bool refused) {
    auto notes = model.shortcutNotes.get();
    auto refusedNotes = model.refusedNotes.get();
    if (note)
        notes[action] = *note;
    else
        notes.erase(action);
    if (refused)
        refusedNotes.insert(action);
    else
        refusedNotes.erase(action);
    model.refusedNotes.set(std::move(refusedNotes));
    model.shortcutNotes.set(std::move(notes));
}

}  // namespace

void AppDelegate::installSettings() {
    settings_.model.preferences.capabilities = system_.capabilities;
    settings_.model.preferences.systemUnlockIsProven = system_.systemUnlockIsProven;
    auto& about = settings_.model.about;
    about.version.set(fmt::format("{} ({})", Brand::version, Brand::build));
    about.automaticChecks.set(updates_->automaticChecks());
    about.onSetAutomatic = [this](bool on) {
        updates_->setAutomaticChecks(on);
        start(updates_->start());
    };
    about.onCheck = [this] { start(updates_->checkNow()); };
    about.onCancelCheck = [this] { updates_->cancel(); };
    about.onInstall = [this] { installUpdate(); };
    about.onUninstall = [this] { confirmUninstall(); };
    about.onEmail = [this] {
        system_.windows.openURL(fmt::format("mailto:{}", Brand::supportEmail));
    };
    showUpdateState();
}

void AppDelegate::installPreferences() {
    auto& live = system_.windows;
    auto& model = settings_.model.preferences;
    attemptLog_ = AttemptLog::load(system_.attemptFile);
    attemptLog_.prune(system_.wallClock());
    model.prefs.set(prefs_);
    model.triggers.set(triggers_);
    showAttempts();
    model.launchAtLogin.set(live.opensAtLogin());

    model.onChange = [this](const Preferences& prefs) {
        prefs_ = prefs;
        prefs_.save(system_.defaults);
        applyPreferences();
    };
    model.onTriggersChange = [this](const TriggerSettings& triggers) {
        triggers_ = triggers;
        applyTriggers();
    };
    model.onSetLaunchAtLogin = [this](bool on) { setOpensAtLogin(on); };
    model.onPreviewLock = [this] {
        if (!isMacLocked()) presenter_->preview(5.0);
    };
    model.onAddApp = [this](const std::string& bundleID) {
        if (!privateApps_->list().contains(bundleID)) privateApps_->toggle(bundleID);
        privateAppsChanged();
    };
    model.onRemoveApp = [this](const std::string& bundleID) {
        if (privateApps_->list().contains(bundleID)) privateApps_->toggle(bundleID);
        privateAppsChanged();
    };
    model.onChooseFromApplications = [this] { chooseApplication(); };
    model.onOpenNotificationSettings = live.openNotificationSettings;
    installRecorder();
    settings_.onWillShow = [this] {
        auto& shown = settings_.model.preferences;
        refreshPrivateAppRows();
        const auto now = system_.wallClock();
        // The texts refer to the last days, and the program may have been running for longer.
        attemptLog_.prune(now);
        showAttempts();
        shown.now.set(now);
        settings_.model.about.icon.set(
            system_.menu.iconForBundleID(std::string(Brand::bundleIdentifier)));
        shown.launchAtLogin.set(system_.windows.opensAtLogin());
        shown.passwordSuffices.set(system_.passwordSuffices());
        shown.offersLockBeforeSleep.set(sleep_ && mayLockScreen() &&
                                        !system_.sessionLockerIsKnown());
        shown.macOSCorners.set(system_.windows.desktopCorners());
    };
}

void AppDelegate::installRecorder() {
    auto& model = settings_.model.preferences;
    shortcutRecorder_ =
        std::make_unique<OrvelModes::ShortcutRecorder>(system_.windows.recorderHooks(
            [this] { return settings_.window(); }, [this] { shortcuts_->pause(); },
            [this] { shortcuts_->resume(); }));
    shortcutRecorder_->onDecision = [this](Action action, const RecorderDecision& decision) {
        shortcutDecided(action, decision);
    };
    model.onRecord = [this](Action action) {
        setNote(settings_.model.preferences, action, {}, false);
        shortcutRecorder_->start(action);
        settings_.model.preferences.recording.set(action);
    };
    model.onStopRecording = [this] { shortcutRecorder_->stop(); };
    model.onClearShortcut = [this](Action action) { shortcutRecorder_->clear(action); };
    settings_.model.onPaneChange = [this] { shortcutRecorder_->stop(); };
}

void AppDelegate::shortcutDecided(Action action, const RecorderDecision& decision) {
    auto& model = settings_.model.preferences;
    model.recording.set(std::nullopt);
    const auto result = ShortcutEditor::apply(decision, action, prefs_.shortcuts, system_.osVersion,
                                              system_.reservedShortcuts);
    setNote(model, action, result.note, result.note && !result.saved);
    if (result.saved) model.change(&Preferences::shortcuts, result.set);
}

void AppDelegate::noteTakenShortcuts(const std::set<Action>& taken) {
    auto& model = settings_.model.preferences;
    for (const auto action : allCases<Action>()) {
        const auto& notes = model.shortcutNotes.get();
        const auto note = notes.find(action);
        if (taken.contains(action))
            setNote(model, action, takenNote, true);
        else if (note != notes.end() && note->second == takenNote)
            setNote(model, action, {}, false);
    }
}

void AppDelegate::setOpensAtLogin(bool on) {
    if (const auto error = system_.windows.setOpensAtLogin(on))
        system_.log(fmt::format("{}: launch at login: {}", Brand::name, error.message()));
    settings_.model.preferences.launchAtLogin.set(system_.windows.opensAtLogin());
}

void AppDelegate::chooseApplication() {
    system_.windows.chooseApplications(lifetime_.guard(
        [this](const std::vector<std::string>& bundleIDs) { addPrivateApps(bundleIDs); }));
}

void AppDelegate::addPrivateApps(const std::vector<std::string>& bundleIDs) {
    for (const auto& bundleID : bundleIDs)
        if (!privateApps_->list().contains(bundleID)) privateApps_->toggle(bundleID);
    privateAppsChanged();
}

void AppDelegate::privateAppsChanged() {
    refreshPrivateAppRows();
    fillPanel();
    refreshIcon();
}

void AppDelegate::refreshPrivateAppRows() {
    auto& model = settings_.model.preferences;
    const auto& list = privateApps_->list();
    std::vector<OrvelUI::AppRow> rows;
    rows.reserve(list.bundleIDs().size());
    for (const auto& bundleID : list.bundleIDs()) rows.push_back(appRow(bundleID));
    model.privateApps.set(std::move(rows));

    std::set<std::string> addable;
    for (const auto& app : system_.covers.running())
        if (app.bundleID && !list.contains(*app.bundleID)) addable.insert(*app.bundleID);
    std::vector<OrvelUI::AppRow> choices;
    choices.reserve(addable.size());
    for (const auto& bundleID : addable) choices.push_back(appRow(bundleID));
    std::ranges::stable_sort(choices, NaturalOrder(), &OrvelUI::AppRow::name);
    model.addableApps.set(std::move(choices));
}

OrvelUI::AppRow AppDelegate::appRow(const std::string& bundleID) const {
    return {bundleID, system_.menu.nameForBundleID(bundleID).value_or(bundleID),
            system_.menu.iconForBundleID(bundleID)};
}

}  // namespace OrvelApp
