#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "OrvelAuth/PasswordVerifying.h"
#include "OrvelBlur/BlurBackend.h"
#include "OrvelCore/Capabilities.h"
#include "OrvelCore/Date.h"
#include "OrvelCore/LockMarker.h"
#include "OrvelCore/SettingsStore.h"
#include "OrvelCore/ShortcutRules.h"
#include "OrvelCore/WeakList.h"
#include "OrvelCovers/AppKitBadgePresenter.h"
#include "OrvelCovers/AppLockSystem.h"
#include "OrvelCovers/CoverLoop.h"
#include "OrvelCovers/PrivateAppsController.h"
#include "OrvelCovers/WindowWatcher.h"
#include "OrvelLock/KioskController.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelModes/Blur/FocusBlurSystem.h"
#include "OrvelModes/Blur/HotCornerController.h"
#include "OrvelModes/Blur/IdleController.h"
#include "OrvelModes/Blur/QuickBlurSystem.h"
#include "OrvelModes/Feedback/LockFeedbackRunner.h"
#include "OrvelModes/Feedback/ToastPresenter.h"
#include "OrvelModes/StatusItem/MenuPanelPresenter.h"
#include "OrvelModes/StatusItem/StatusItem.h"
#include "OrvelModes/StatusItem/StatusMenu.h"
#include "OrvelModes/Windows/OnboardingWindowController.h"
#include "OrvelModes/Windows/SettingsWindowController.h"
#include "OrvelModes/Windows/ShortcutRecorder.h"
#include "OrvelModes/Windows/Uninstaller.h"
#include "OrvelSystem/DisplayAwake.h"
#include "OrvelSystem/HotkeyPlatform.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Picture.h"
#include "OrvelSystem/ProcessList.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelUI/Alert.h"
#include "OrvelUpdates/UpdateSystem.h"

namespace OrvelApp {

/// Handlers for events of the session, called on the main thread.
struct SessionHandlers {
    std::function<void()> macOSLocked;
    std::function<void()> macOSUnlocked;
    std::function<void()> macOSLockUnknown;
    std::function<void()> sleep;
    std::function<void()> wake;
    std::function<void()> lockRequested;
    std::function<void()> screensChanged;
};

/// Handlers for what happens during checks of passwords and fingers, called on the main thread.
struct AuthenticationHandlers {
    /// The fingerprint sensor has locked itself after repeated mismatches.
    std::function<void()> fingersLockedOut;
    /// A check required more than the password, with the question in the words of the system.
    std::function<void(const std::string& question)> moreWasAsked;
};

/// What the covers of single windows need.
struct CoverSystem {
    std::function<std::unique_ptr<OrvelCovers::CoverSurface>(
        const OrvelCore::CoverRequest&, OrvelBlur::BlurBackend, std::function<void()> onClick)>
        makeSurface;
    OrvelCovers::CoverLoop::Sources sources;
    OrvelCovers::WindowWatcher::Reads watcherReads;
    OrvelCovers::AppKitBadgePresenter::System badges;
    /// Without the members that the delegate sets itself: the account and the state of the lock.
    OrvelCovers::AppLockSystem appLock;
    OrvelCovers::PrivateAppsController::Running running;
    /// Reports the workspace's events until the token is destroyed.
    std::function<OrvelCore::Subscription(OrvelSystem::Workspace::Events)> observeWorkspace;
};

/// What the status item, its menu and its panel need.
struct MenuSystem {
    std::function<std::unique_ptr<OrvelModes::StatusItem>(OrvelModes::StatusMenuController&)>
        makeStatusItem;
    OrvelModes::MenuPanelSystem panel;
    /// The front app, and the app of a process; `nullopt` if there is none.
    std::function<std::optional<OrvelCovers::RunningApp>()> front;
    std::function<std::optional<OrvelCovers::RunningApp>(std::int64_t pid)> app;
    /// The name and the icon of an installed app; `nullopt` and null if it is not installed.
    std::function<std::optional<std::string>(const std::string& bundleID)> nameForBundleID;
    std::function<std::shared_ptr<const OrvelSystem::Picture>(const std::string& bundleID)>
        iconForBundleID;
    std::function<bool()> screenReaderOn;
    /// Whether the user operates all controls with the keyboard, according to the system's
    /// settings.
    std::function<bool()> fullKeyboardAccess;
    /// Quits the program as the user does.
    std::function<void()> quit;
};

/// What the blur modes, the triggers and the feedback of a lock need.
struct ModeSystem {
    using Look = std::function<OrvelCore::OverlayLook()>;

    std::function<OrvelModes::QuickBlurSystem(OrvelBlur::BlurBackend, Look,
                                              std::function<bool()> macLocked)>
        quickBlur;
    std::function<OrvelModes::FocusBlurSystem(OrvelBlur::BlurBackend, Look)> focusBlur;
    /// Calls back after each change of the appearance or of the user's accessibility settings for
    /// it, until the token is destroyed.
    std::function<OrvelCore::Subscription(std::function<void()>)> observeAppearance;
    OrvelModes::IdleSources idle;
    std::function<std::unique_ptr<OrvelModes::CornerPanel>()> makeCornerPanel;
    /// The frames of the displays, in window-server coordinates.
    std::function<std::vector<OrvelCore::Rect>()> screens;
    OrvelModes::LockFeedbackRunner::Outputs feedback;
    std::function<bool()> interfaceSoundsOn;
    OrvelModes::ToastSystem toasts;
};

/// What the windows of Settings and of the first-run guide need.
struct WindowSystem {
    OrvelModes::SettingsWindowSystem settings;
    OrvelModes::OnboardingWindowSystem onboarding;
    std::function<OrvelModes::ShortcutRecorder::Hooks(
        std::function<OrvelModes::AppWindow*()> window, std::function<void()> pause,
        std::function<void()> resume)>
        recorderHooks;
    /// Whether the session starts the program, as reported by the system.
    std::function<bool()> opensAtLogin;
    /// Returns the error if the system refuses, and an empty code on success.
    std::function<std::error_code(bool)> setOpensAtLogin;
    /// The corners for which the desktop itself has an action.
    std::function<std::set<OrvelCore::TriggerSettings::Corner>()> desktopCorners;
    std::function<void()> openNotificationSettings;
    /// Opens the URL with the user's default program.
    std::function<void(const std::string& url)> openURL;
    /// The answers come in a later turn of the loop; see `Dialogs`.
    std::function<void(const OrvelUI::Alert&, std::function<void(std::size_t button)>)> alert;
    std::function<void(std::function<void(const std::vector<std::string>& bundleIDs)>)>
        chooseApplications;
    OrvelModes::UninstallSystem uninstall;
};

/// Everything that the program uses of its platform. Everything referred to must outlive the
/// delegate.
struct AppSystem {
    OrvelSystem::MainLoop& loop;
    OrvelCore::SettingsStore& defaults;
    OrvelCore::MarkerStoring& markers;
    std::filesystem::path attemptFile;
    OrvelAuth::PasswordVerifying& verifier;
    OrvelSystem::HotkeyPlatform& hotkeys;
    OrvelSystem::DisplayAwake& displayAwake;
    std::function<OrvelCore::Date()> wallClock;

    OrvelCore::Capabilities capabilities;
    std::string fullName;
    std::shared_ptr<const OrvelSystem::Picture> picture;
    std::string bootSession;
    /// The account's limit of failed logins at this moment; `nullopt` when there is none.
    std::function<std::optional<int>()> accountLimit;
    /// The account's own count of failed logins; `nullopt` when it cannot be read.
    std::function<std::optional<int>()> accountFailures;
    /// Whether the account is checked by its password alone. If more is required, such as a
    /// one-time code, nothing could open a lock of this program.
    std::function<bool()> passwordSuffices;
    /// Sets the handlers, which are called until the program ends.
    std::function<void(AuthenticationHandlers)> observeAuthentication;
    std::function<bool()> biometricsAvailable;

    OrvelBlur::BlurSupport blurSupport;
    std::function<OrvelLock::LockPresenterSystem(OrvelBlur::BlurBackend)> lockPresenter;
    OrvelLock::KioskSystem kiosk;
    std::function<bool()> darkAppearance;
    std::function<bool()> reduceTransparency;

    CoverSystem covers;
    ModeSystem modes;
    MenuSystem menu;
    WindowSystem windows;
    OrvelUpdates::UpdateSystem updates;

    /// Asks for the system's own lock.
    std::function<void()> engageMacOSLock;
    /// Whether a program that responds to that request is running.
    std::function<bool()> sessionLockerIsKnown;
    /// Whether `engageMacOSLock` has something to ask, which also includes programs that it starts.
    std::function<bool()> sessionLockerIsAvailable;
    std::function<bool()> screenIsLocked;
    /// Its lock cannot come up over a lock of this program, so what would hand off at once asks for
    /// it in this one's place.
    bool locksExclusively = false;
    /// Ends the program soon, without unlocking. Used only with `locksExclusively`.
    std::function<void()> leave = [] {};
    /// Makes the machine wait before it sleeps, or no longer. Empty on platforms whose own lock
    /// comes up before they sleep; `SessionHandlers::sleep` and `lockRequested` are not called
    /// there.
    std::function<void(bool delays)> delaySleep;
    /// Whether `SessionHandlers::macOSUnlocked` is ever called.
    bool systemUnlockIsProven = true;
    /// Sets the handlers, which are called until the program ends.
    std::function<void(SessionHandlers)> observeSession;

    /// Whether the guard is registered and one of its processes runs.
    std::function<bool()> guardAvailable;
    /// Registers and starts the guard, off the main thread. With `renews`, a running guard of an
    /// older version is replaced, which requires that nothing is locked.
    std::function<void(bool renews)> startGuard;

    /// Whether the program's own file is current, replaced or gone.
    std::function<OrvelSystem::ProgramFile::State()> programFile;
    /// Quits the program and starts the file that is now in its place, which then opens these URLs.
    std::function<void(std::vector<std::string> urls)> restart;

    /// The version of macOS; all 0 on another system.
    OrvelCore::OSVersion osVersion;
    /// The combinations that the desktop and its programs use.
    std::span<const OrvelCore::ReservedShortcut> reservedShortcuts;

    std::map<std::string, std::string, std::less<>> environment;
    /// Whether the session started the program, rather than the user.
    bool asLoginItem = false;
    std::function<void()> activateApp;
    /// Logs one line, in the form "{name}: {what}: {error}".
    std::function<void(std::string_view)> log;
};

}  // namespace OrvelApp
