#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
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
#include "OrvelSystem/Picture.h"
#include "OrvelUI/AppRow.h"

namespace OrvelUI {

/// The panes of the Settings window, in the order of its sidebar.
enum class SettingsPane { general, lock, blur, privateApps, shortcuts, about };
constexpr std::array<std::string_view, 6> rawNames(SettingsPane) {
    return {"general", "lock", "blur", "privateApps", "shortcuts", "about"};
}
std::string_view title(SettingsPane pane);
std::string_view symbol(SettingsPane pane);

/// What all panes except the last one edit. The owner sets the fields to the program's state and
/// gets the user's changes through the closures. Must outlive its views. Main thread only.
class PreferencesModel {
  public:
    using Action = OrvelCore::ShortcutSet::Action;
    using Corner = OrvelCore::TriggerSettings::Corner;
    template <class T>
    using Observed = OrvelCore::Observed<T>;

    PreferencesModel();
    PreferencesModel(const PreferencesModel&) = delete;
    PreferencesModel& operator=(const PreferencesModel&) = delete;

    /// Every change, including those by the owner, calls `onChange`.
    Observed<OrvelCore::Preferences> prefs;
    /// Every change, including those by the owner, calls `onTriggersChange`.
    Observed<OrvelCore::TriggerSettings> triggers;
    Observed<bool> launchAtLogin{false};
    /// What this session offers. Set it before the first view is made.
    OrvelCore::Capabilities capabilities;
    /// Whether the system reports an unlock of its own lock in a way that proves it. If not, the
    /// setting for such an unlock is not shown.
    bool systemUnlockIsProven = true;
    /// Whether this program locks before the machine sleeps if the user wants it. If not, the
    /// setting is not shown.
    Observed<bool> offersLockBeforeSleep{false};
    /// Whether the account is checked by its password alone. If not, this program locks nothing.
    Observed<bool> passwordSuffices{true};
    /// The failed attempts, newest first.
    Observed<std::vector<OrvelCore::Date>> attempts;
    /// The current time, for the list of attempts.
    Observed<OrvelCore::Date> now;
    Observed<OrvelCore::Locale> locale{OrvelCore::currentLocale()};
    Observed<OrvelCore::TimeZone> timeZone{OrvelCore::currentTimeZone()};
    /// The corners for which the desktop itself has an action.
    Observed<std::set<Corner>> macOSCorners;
    Observed<std::vector<AppRow>> privateApps;
    /// Running apps that are not private yet.
    Observed<std::vector<AppRow>> addableApps;
    /// Whether the list of `addableApps` is open.
    Observed<bool> showsAddableApps{false};
    /// The action whose shortcut is being recorded; `nullopt` if none is.
    Observed<std::optional<Action>> recording;
    Observed<std::map<Action, std::string>> shortcutNotes;
    /// The actions whose note reports that nothing was saved.
    Observed<std::set<Action>> refusedNotes;
    using Closure = std::function<void()>;
    using AppClosure = std::function<void(const std::string& bundleID)>;
    using ActionClosure = std::function<void(Action)>;
    std::function<void(const OrvelCore::Preferences&)> onChange = [](const auto&) {};
    std::function<void(const OrvelCore::TriggerSettings&)> onTriggersChange = [](const auto&) {};
    /// The owner then sets `launchAtLogin` to the new state.
    std::function<void(bool)> onSetLaunchAtLogin = [](bool) {};
    Closure onPreviewLock = [] {};
    AppClosure onAddApp = [](const auto&) {};
    AppClosure onRemoveApp = [](const auto&) {};
    Closure onChooseFromApplications = [] {};
    Closure onOpenNotificationSettings = [] {};
    ActionClosure onRecord = [](Action) {};
    ActionClosure onClearShortcut = [](Action) {};
    Closure onStopRecording = [] {};

    /// Sets one field of `prefs` or `triggers`.
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
    /// Chooses `corner`, or no corner if it is already chosen.
    void pick(Corner corner);
    /// Sets the away message to as much of the typed text as is allowed, and returns that part.
    std::string typeAwayMessage(const std::string& typed);
    /// Call when typing has ended: removes blanks at both ends.
    void finishAwayMessage();

  private:
    OrvelCore::Subscription prefsObservation_;
    OrvelCore::Subscription triggersObservation_;
};

/// The last pane: the version, updates, and the uninstaller.
class AboutPaneModel {
  public:
    template <class T>
    using Observed = OrvelCore::Observed<T>;

    Observed<std::string> version;
    /// The program's icon; null if the desktop has none for it.
    Observed<std::shared_ptr<const OrvelSystem::Picture>> icon;
    Observed<std::string> updateStatus;
    Observed<bool> updateReady{false};
    Observed<bool> checking{false};
    Observed<bool> automaticChecks{true};

    using Closure = std::function<void()>;
    Closure onCheck = [] {};
    /// Available only while `checking`.
    Closure onCancelCheck = [] {};
    Closure onInstall = [] {};
    Closure onUninstall = [] {};
    Closure onEmail = [] {};
    /// `automaticChecks` has already been set.
    std::function<void(bool)> onSetAutomatic = [](bool) {};

    static std::string privacy();
};

class SettingsModel {
  public:
    SettingsModel();
    SettingsModel(const SettingsModel&) = delete;
    SettingsModel& operator=(const SettingsModel&) = delete;

    OrvelCore::Observed<SettingsPane> pane{SettingsPane::general};
    /// Called for each change of `pane`.
    std::function<void()> onPaneChange = [] {};
    AboutPaneModel about;
    PreferencesModel preferences;
    /// True for a still picture without animations.
    bool staticPreview = false;

    /// Calls `changed` after each change of any field, until the result is destroyed.
    [[nodiscard]] std::vector<OrvelCore::Subscription> observe(
        const std::function<void()>& changed);

  private:
    OrvelCore::Subscription paneObservation_;
};

}  // namespace OrvelUI
