#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OrvelApp/AppSystem.h"
#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Preferences.h"
#include "OrvelCore/TriggerSettings.h"
#include "OrvelCore/URLCommand.h"
#include "OrvelCore/WeakList.h"
#include "OrvelCovers/AppLockController.h"
#include "OrvelLock/AppKitLockPresenter.h"
#include "OrvelLock/LockSession.h"
#include "OrvelLock/MacOSHandoff.h"
#include "OrvelModes/Blur/FocusBlurController.h"
#include "OrvelModes/Blur/QuickBlurController.h"
#include "OrvelModes/Blur/SleepController.h"
#include "OrvelModes/Windows/OnboardingWindowController.h"
#include "OrvelModes/Windows/SettingsWindowController.h"
#include "OrvelModes/Windows/ShortcutRecorder.h"
#include "OrvelModes/Windows/ShortcutRegistrar.h"
#include "OrvelSystem/HotkeyCenter.h"
#include "OrvelUI/LockCardModel.h"
#include "OrvelUI/MenuPanelModel.h"
#include "OrvelUpdates/UpdateController.h"

namespace OrvelApp {

/// Assembles the program: it owns every long-lived object, and only it knows how they are
/// connected. A request that arrives before the launch has finished does nothing, and neither does
/// a closure whose target is gone. Main thread only.
class AppDelegate {
  public:
    explicit AppDelegate(AppSystem system);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// Builds everything, in an order in which each part finds what it depends on.
    void applicationDidFinishLaunching();

    /// The only entry point to the screen lock. Returns false, after calling `covered(false)`, if a
    /// lock runs or starts, or if the system's own lock is engaged instead. Otherwise `covered` is
    /// called later with whether the screen was covered.
    bool lockNow(bool instant, std::function<void(bool)> covered = nullptr);
    void shortcutPressed(OrvelCore::ShortcutSet::Action action);
    /// Handles URLs that other programs open. URLs that are not understood are ignored.
    void open(const std::vector<std::string>& urls);
    void setPrivateApps(OrvelCore::URLCommands::Switch change);
    /// The user opened the program while it runs. This is the way back for a user who has hidden
    /// the icon.
    void reopen();
    /// The package manager has replaced or removed the program's file. When nothing is locked or
    /// blurred any more, the program restarts as the new one, or quits.
    void programFileChanged();
    /// Whether the program may quit. `quitCode` is the four-character code of the system's reason;
    /// `nullopt` when the user asked.
    bool applicationShouldTerminate(std::optional<std::uint32_t> quitCode) const;

    bool isMacLocked() const { return session_ && session_->isLocked(); }
    bool macCovered() const { return macCovered_; }
    /// Whether the previous process died during a lock in this boot.
    bool resumesLock() const { return session_ && session_->willResume(); }

  private:
    static constexpr const char* asksForMore = "Your account asks for more than a password";
    static constexpr const char* letsNoneCover = "Your desktop lets no program cover others";

    // AppDelegate.cpp
    void screensChanged();
    void start(OrvelSystem::Task<void> task);

    // AppDelegateLock.cpp: the lock of the screen, its guard and its failed attempts
    void makeLock(OrvelBlur::BlurBackend backend);
    void makeFeedback();
    void observeAuthentication();
    void registerGuard();
    OrvelSystem::Task<void> lock(std::function<void(bool)> covered);
    void leaveLockToDesktop();
    void lockCoverChanged(bool covered);
    void recordFailedAttempt(OrvelCore::Date date);
    void showAttempts();
    void reportAttempts();

    // AppDelegateCovers.cpp: locked apps and the covers of single windows
    void installCovers(OrvelBlur::BlurBackend backend);
    bool mayLockApps();
    int appLocks() const;

    // AppDelegatePrivateApps.cpp
    void chooseApplication();
    void addPrivateApps(const std::vector<std::string>& bundleIDs);
    void privateAppsChanged();
    void refreshPrivateAppRows();
    OrvelUI::AppRow appRow(const std::string& bundleID) const;

    // AppDelegateModes.cpp: Blur Screen, Focus Blur and the triggers
    void installModes(OrvelBlur::BlurBackend backend);
    void installTriggers();
    void installSleep();
    bool mayLockScreen() const;
    void configureCorner();
    void refreshFocusLook();
    void switchQuickBlur(OrvelCore::URLCommands::Switch change);
    void switchFocusBlur(OrvelCore::URLCommands::Switch change);

    // AppDelegateUpdates.cpp: updates, replacement of the program's file, uninstallation
    void installUpdates();
    void woke();
    void showUpdateState();
    void installUpdate();
    void followProgramFile();
    OrvelSystem::Task<void> leave();
    bool hidesSomething() const;
    bool waitsForRestart() const;
    void becameFree();
    void confirmUninstall();
    OrvelSystem::Task<void> uninstall();

    // AppDelegateMenu.cpp: the status item, its menu and its panel
    void installStatusItem();
    void refreshIcon();
    /// Updates the icon and an open panel after a change of what is locked, blurred or chosen.
    void stateChanged();
    void fillPanel();
    void openPanel();

    // AppDelegateSettings.cpp: the window of Settings, and what a change of a setting does
    void installSettings();
    void installPreferences();
    void setOpensAtLogin(bool on);
    void applyPreferences();
    void applyTriggers();

    // AppDelegateShortcuts.cpp
    void installShortcuts();
    void noteGivenKeys(OrvelCore::ShortcutSet::Action action, const std::string& keys);
    void noteTakenShortcuts(const std::set<OrvelCore::ShortcutSet::Action>& taken);
    void installRecorder();
    void shortcutDecided(OrvelCore::ShortcutSet::Action action,
                         const OrvelCore::RecorderDecision& decision);

    // AppDelegateOnboarding.cpp: the first screen and the first-run guide
    void showFirstScreen();
    void showOnboarding();
    void tryLock();
    void finishOnboarding(const OrvelCore::OnboardingFlow::Outcome& outcome);
    void dropOnboarding();

    AppSystem system_;
    OrvelSystem::HotkeyCenter hotkeys_;
    OrvelCore::TriggerSettings triggers_;
    OrvelCore::Preferences prefs_;
    OrvelCore::AttemptLog attemptLog_;
    /// Whether every object exists. Before that, requests of the user and of other programs do
    /// nothing.
    bool isLaunched_ = false;
    bool macCovered_ = false;
    bool lockStarting_ = false;
    bool uninstalling_ = false;
    bool programFileChanged_ = false;
    /// A guard of an older version may be running and must be replaced when nothing is locked.
    bool guardRenewalWaits_ = false;
    std::optional<OrvelCore::Date> lockStartedAt_;

    OrvelModes::ToastPresenter toasts_;
    OrvelModes::SettingsWindowController settings_;
    std::unique_ptr<OrvelUI::LockCardModel> lockModel_;
    std::unique_ptr<OrvelModes::LockFeedbackRunner> feedback_;
    std::unique_ptr<OrvelLock::AppKitLockPresenter> presenter_;
    std::unique_ptr<OrvelLock::KioskController> kiosk_;
    std::unique_ptr<OrvelLock::MacOSHandoff> handoff_;
    std::unique_ptr<OrvelLock::LockSession> session_;
    std::unique_ptr<OrvelCovers::CoverController> covers_;
    std::unique_ptr<OrvelCovers::Ticker> coverTicker_;
    std::unique_ptr<OrvelCovers::CoverLoop> coverLoop_;
    std::unique_ptr<OrvelCovers::WindowWatcher> windowWatcher_;
    std::unique_ptr<OrvelCovers::AppKitBadgePresenter> badges_;
    std::unique_ptr<OrvelCovers::AppLockController> appLock_;
    std::unique_ptr<OrvelCovers::PrivateAppsController> privateApps_;
    OrvelCore::Subscription workspaceObserver_;
    std::unique_ptr<OrvelModes::QuickBlurController> quickBlur_;
    std::unique_ptr<OrvelModes::FocusBlurController> focusBlur_;
    /// The look with which the overlays of Focus Blur were last made.
    std::optional<OrvelCore::OverlayLook> focusLookShown_;
    std::unique_ptr<OrvelCovers::WindowWatcher> focusWatcher_;
    OrvelCore::Subscription appearanceObservation_;
    std::unique_ptr<OrvelCovers::Ticker> idleTicker_;
    std::unique_ptr<OrvelModes::IdleController> idle_;
    std::unique_ptr<OrvelModes::HotCornerController> hotCorner_;
    /// Null on platforms whose own lock comes up before they sleep.
    std::unique_ptr<OrvelModes::SleepController> sleep_;
    std::unique_ptr<OrvelUpdates::UpdateController> updates_;
    std::unique_ptr<OrvelUI::MenuPanelModel> panelModel_;
    std::unique_ptr<OrvelModes::StatusMenuController> statusMenu_;
    std::unique_ptr<OrvelModes::MenuPanelPresenter> panelPresenter_;
    std::unique_ptr<OrvelModes::StatusItem> statusItem_;
    /// The app in front when the panel or menu was last requested, and the app to which "Lock"
    /// applies.
    std::optional<OrvelCovers::RunningApp> panelFront_;
    std::optional<std::int64_t> panelFrontPID_;
    std::unique_ptr<OrvelModes::ShortcutRegistrar> shortcuts_;
    std::unique_ptr<OrvelModes::ShortcutRecorder> shortcutRecorder_;
    /// Exists only while the guide is open.
    std::unique_ptr<OrvelModes::OnboardingWindowController> onboarding_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelApp
