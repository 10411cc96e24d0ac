#include <fmt/format.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/Brand.h"

namespace OrvelApp {

using namespace OrvelCore;

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
    model.onAddApp = [this](const std::string& bundleID) { addPrivateApps({bundleID}); };
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

void AppDelegate::setOpensAtLogin(bool on) {
    if (const auto error = system_.windows.setOpensAtLogin(on))
        system_.log(fmt::format("{}: launch at login: {}", Brand::name, error.message()));
    settings_.model.preferences.launchAtLogin.set(system_.windows.opensAtLogin());
}

void AppDelegate::applyPreferences() {
    lockModel_->showsClock.set(prefs_.showsClock);
    lockModel_->awayMessage.set(prefs_.awayMessage);
    session_->setUnlocksWithMacOS(prefs_.unlocksWithMacOS);
    coverLoop_->peekEnabled = prefs_.peekWithOption;
    statusItem_->setVisible(prefs_.showsMenuBarIcon);
    if (macCovered_) {
        if (prefs_.keepsDisplaysAwake)
            system_.displayAwake.hold();
        else
            system_.displayAwake.release();
    }
    refreshFocusLook();
    shortcuts_->apply(prefs_.shortcuts);
    appLock_->setUnlockShortcut(prefs_.shortcuts.lockApp);
    stateChanged();
}

void AppDelegate::applyTriggers() {
    triggers_.save(system_.defaults);
    idle_->setSettings(triggers_.idle());
    if (sleep_) sleep_->settingsChanged();
    configureCorner();
    session_->setHandOffAfter(triggers_.handOffAfter);
}

}  // namespace OrvelApp
