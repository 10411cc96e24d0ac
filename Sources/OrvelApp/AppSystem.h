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

/// What happens to the session, as the delegate wants to hear it. Main thread.
struct SessionHandlers {
    std::function<void()> macOSLocked;
    std::function<void()> macOSUnlocked;
    std::function<void()> macOSLockUnknown;
    std::function<void()> wake;
    std::function<void()> screensChanged;
};

/// What checks of passwords and fingers meet, as the delegate wants to hear it. Main thread.
struct AuthenticationHandlers {
    /// The fingerprint sensor has locked itself.
    std::function<void()> fingersLockedOut;
    /// A check asked for more than the password.
    std::function<void()> moreWasAsked;
};

/// What the covers of single windows need.
struct CoverSystem {
    std::function<std::unique_ptr<OrvelCovers::CoverSurface>(
        const OrvelCore::CoverRequest&, OrvelBlur::BlurBackend, std::function<void()> onClick)>
        makeSurface;
    OrvelCovers::CoverLoop::Sources sources;
    OrvelCovers::WindowWatcher::Reads watcherReads;
    OrvelCovers::AppKitBadgePresenter::System badges;
    /// Without what the delegate knows itself: the account and the state of the lock.
    OrvelCovers::AppLockSystem appLock;
    OrvelCovers::PrivateAppsController::Running running;
    /// The workspace's events, until the token is dropped.
    std::function<std::shared_ptr<void>(OrvelSystem::Workspace::Events)> observeWorkspace;
};

/// What the status item, its menu and its panel need.
struct MenuSystem {
    std::function<std::unique_ptr<OrvelModes::StatusItem>(OrvelModes::StatusMenuController&)>
        makeStatusItem;
    OrvelModes::MenuPanelSystem panel;
    /// The app in front, and one by its process; nothing when there is none.
    std::function<std::optional<OrvelCovers::RunningApp>()> front;
    std::function<std::optional<OrvelCovers::RunningApp>(std::int64_t pid)> app;
    /// Of an installed app; nothing and null when there is none.
    std::function<std::optional<std::string>(const std::string& bundleID)> nameForBundleID;
    std::function<std::shared_ptr<const OrvelSystem::Picture>(const std::string& bundleID)>
        iconForBundleID;
    std::function<bool()> screenReaderOn;
    /// Asks for the end of the program as a user does.
    std::function<void()> quit;
};

/// What the blur modes, the triggers and the feedback of a lock need.
struct ModeSystem {
    using Look = std::function<OrvelCore::OverlayLook()>;

    std::function<OrvelModes::QuickBlurSystem(OrvelBlur::BlurBackend, Look,
                                              std::function<bool()> macLocked)>
        quickBlur;
    std::function<OrvelModes::FocusBlurSystem(OrvelBlur::BlurBackend, Look)> focusBlur;
    /// Calls back after the appearance, or what the user asks of it, changed, until the token is
    /// dropped.
    std::function<std::shared_ptr<void>(std::function<void()>)> observeAppearance;
    OrvelModes::IdleSources idle;
    std::function<std::unique_ptr<OrvelModes::CornerPanel>()> makeCornerPanel;
    /// Frames of the displays, in window-server coordinates.
    std::function<std::vector<OrvelCore::Rect>()> screens;
    OrvelModes::LockFeedbackRunner::Outputs feedback;
    std::function<bool()> interfaceSoundsOn;
    OrvelModes::ToastSystem toasts;
};

/// What the windows of Settings and the first-run guide need.
struct WindowSystem {
    OrvelModes::SettingsWindowSystem settings;
    OrvelModes::OnboardingWindowSystem onboarding;
    std::function<OrvelModes::ShortcutRecorder::Hooks(
        std::function<OrvelModes::AppWindow*()> window, std::function<void()> pause,
        std::function<void()> resume)>
        recorderHooks;
    /// Whether the session starts the program, as the system says itself.
    std::function<bool()> opensAtLogin;
    std::function<std::error_code(bool)> setOpensAtLogin;
    /// The corners that the desktop itself acts on.
    std::function<std::set<OrvelCore::TriggerSettings::Corner>()> desktopCorners;
    std::function<void()> openNotificationSettings;
    /// With whatever the user has for it.
    std::function<void(const std::string& url)> openURL;
    /// The answers come in a later turn of the loop; see `Dialogs`.
    std::function<void(const OrvelUI::Alert&, std::function<void(std::size_t button)>)> alert;
    std::function<void(std::function<void(const std::vector<std::string>& bundleIDs)>)>
        chooseApplications;
    OrvelModes::UninstallSystem uninstall;
};

/// All that the program touches of its platform at launch and after. Everything referred to
/// outlives the delegate.
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
    /// The account's limit of failed logins now; nothing for none.
    std::function<std::optional<int>()> accountLimit;
    std::function<std::optional<int>()> accountFailures;
    /// Whether the account is checked by its password alone. Where more is asked, such as a
    /// one-time code, nothing would open a lock of this program again.
    std::function<bool()> passwordSuffices;
    /// The handlers are called from now on to the end of the program.
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
    /// Whether a program runs that hears the request.
    std::function<bool()> sessionLockerIsKnown;
    std::function<bool()> screenIsLocked;
    /// Its lock cannot come up over a lock of this program, so what would hand off at once asks for
    /// it in this one's place.
    bool locksExclusively = false;
    /// Whether `SessionHandlers::macOSUnlocked` is ever called.
    bool systemUnlockIsProven = true;
    /// The session's events from now on, to the end of the program.
    std::function<void(SessionHandlers)> observeSession;

    /// The guard is registered and a process of it runs.
    std::function<bool()> guardAvailable;
    /// Registers and starts the guard, off the main thread. `renews`: a guard of an older version
    /// that still runs is replaced, for which nothing may be locked.
    std::function<void(bool renews)> startGuard;

    /// What has become of the program's own file.
    std::function<OrvelSystem::ProgramFile::State()> programFile;
    /// Ends the program, and starts what lies in its place now, which then opens these URLs.
    std::function<void(std::vector<std::string> urls)> restart;

    /// Of macOS; all 0 on another system.
    OrvelCore::OSVersion osVersion;
    /// The combinations that the desktop and the programs on it use.
    std::span<const OrvelCore::ReservedShortcut> reservedShortcuts;

    std::map<std::string, std::string, std::less<>> environment;
    /// The session started the program, not the user.
    bool asLoginItem = false;
    std::function<void()> activateApp;
    /// One line, in the form "{name}: {what}: {error}".
    std::function<void(std::string_view)> log;
};

}  // namespace OrvelApp
