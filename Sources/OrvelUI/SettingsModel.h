#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/Capabilities.h"
#include "OrvelCore/Date.h"
#include "OrvelCore/Observed.h"
#include "OrvelCore/Preferences.h"
#include "OrvelCore/Text.h"
#include "OrvelCore/TriggerSettings.h"
#include "OrvelUI/AppRow.h"

namespace OrvelUI {

/// The panes of the Settings window, in the order of its sidebar.
enum class SettingsPane { general, lock, blur, privateApps, shortcuts, about };
constexpr std::array<std::string_view, 6> rawNames(SettingsPane) {
    return {"general", "lock", "blur", "privateApps", "shortcuts", "about"};
}
std::string_view title(SettingsPane pane);
std::string_view symbol(SettingsPane pane);

/// What all panes but the last one edit. Its owner writes what the program knows, and hears through
/// the closures what the user wants. Outlives every view of it. Main thread only.
class PreferencesModel {
  public:
    using Action = OrvelCore::ShortcutSet::Action;
    using Corner = OrvelCore::TriggerSettings::Corner;
    template <class T>
    using Observed = OrvelCore::Observed<T>;

    PreferencesModel();
    PreferencesModel(const PreferencesModel&) = delete;
    PreferencesModel& operator=(const PreferencesModel&) = delete;

    /// A change, also one by the owner, calls `onChange`.
    Observed<OrvelCore::Preferences> prefs;
    /// A change, also one by the owner, calls `onTriggersChange`.
    Observed<OrvelCore::TriggerSettings> triggers;
    Observed<bool> launchAtLogin{false};
    /// What is offered. Set before the first view is made.
    OrvelCore::Capabilities capabilities;
    /// Whether the system tells of an unlock of its own lock in a way that proves it. Without that
    /// the setting that such an unlock counts has no row.
    bool systemUnlockIsProven = true;
    /// Failed attempts, newest first.
    Observed<std::vector<OrvelCore::Date>> attempts;
    /// For the list of attempts.
    Observed<OrvelCore::Date> now;
    Observed<OrvelCore::Locale> locale{OrvelCore::currentLocale()};
    Observed<OrvelCore::TimeZone> timeZone{OrvelCore::currentTimeZone()};
    /// The corners that the desktop itself acts on.
    Observed<std::set<Corner>> macOSCorners;
    Observed<std::vector<AppRow>> privateApps;
    /// Apps that run and are not private yet.
    Observed<std::vector<AppRow>> addableApps;
    /// Whether the list of `addableApps` is open.
    Observed<bool> showsAddableApps{false};
    /// The action whose shortcut is being recorded; nothing otherwise.
    Observed<std::optional<Action>> recording;
    Observed<std::map<Action, std::string>> shortcutNotes;
    /// The actions whose note says that nothing was saved.
    Observed<std::set<Action>> refusedNotes;
    using Closure = std::function<void()>;
    using AppClosure = std::function<void(const std::string& bundleID)>;
    using ActionClosure = std::function<void(Action)>;
    std::function<void(const OrvelCore::Preferences&)> onChange = [](const auto&) {};
    std::function<void(const OrvelCore::TriggerSettings&)> onTriggersChange = [](const auto&) {};
    /// `launchAtLogin` changes when the owner says so.
    std::function<void(bool)> onSetLaunchAtLogin = [](bool) {};
    Closure onPreviewLock = [] {};
    AppClosure onAddApp = [](const auto&) {};
    AppClosure onRemoveApp = [](const auto&) {};
    Closure onChooseFromApplications = [] {};
    Closure onOpenNotificationSettings = [] {};
    ActionClosure onRecord = [](Action) {};
    ActionClosure onClearShortcut = [](Action) {};
    Closure onStopRecording = [] {};

    /// Writes one field of `prefs` or `triggers`.
    template <class T>
    void change(T OrvelCore::Preferences::*field, T value) {
        auto changed = prefs.get();
        changed.*field = std::move(value);
        prefs.set(std::move(changed));
    }
    template <class T>
    void change(T OrvelCore::TriggerSettings::*field, T value) {
        auto changed = triggers.get();
        changed.*field = std::move(value);
        triggers.set(changed);
    }
    /// Takes the corner that is picked, or none when it is the one already taken.
    void pick(Corner corner);
    /// Takes what is typed as the away message, as much of it as there is room for, and gives what
    /// it took.
    std::string typeAwayMessage(const std::string& typed);
    /// Typing is over: blanks at the ends go.
    void finishAwayMessage();

  private:
    OrvelCore::Observation prefsObservation_;
    OrvelCore::Observation triggersObservation_;
};

/// The last pane: the version, updates, and the way out.
class AboutPaneModel {
  public:
    template <class T>
    using Observed = OrvelCore::Observed<T>;

    Observed<std::string> version;
    Observed<std::string> updateStatus;
    Observed<bool> updateReady{false};
    Observed<bool> checking{false};
    Observed<bool> automaticChecks{true};

    using Closure = std::function<void()>;
    Closure onCheck = [] {};
    /// Only while `checking`.
    Closure onCancelCheck = [] {};
    Closure onInstall = [] {};
    Closure onUninstall = [] {};
    Closure onEmail = [] {};
    /// `automaticChecks` has been written already.
    std::function<void(bool)> onSetAutomatic = [](bool) {};

    static std::string privacy();
};

class SettingsModel {
  public:
    SettingsModel();
    SettingsModel(const SettingsModel&) = delete;
    SettingsModel& operator=(const SettingsModel&) = delete;

    OrvelCore::Observed<SettingsPane> pane{SettingsPane::general};
    /// Told of each change of `pane`.
    std::function<void()> onPaneChange = [] {};
    AboutPaneModel about;
    PreferencesModel preferences;
    /// For a still picture, in which nothing moves.
    bool staticPreview = false;

    /// Calls `changed` after each change of any field.
    [[nodiscard]] std::vector<OrvelCore::Observation> observe(const std::function<void()>& changed);

  private:
    OrvelCore::Observation paneObservation_;
};

}  // namespace OrvelUI
