#include "OrvelApp/Linux/LiveSystem.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>
#include <variant>

#include <fmt/format.h>
#include <unistd.h>

#include "OrvelAuth/AccountLockoutPolicy.h"
#include "OrvelAuth/Biometrics.h"
#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/Brand.h"
#include "OrvelCovers/LiveCoverSurface.h"
#include "OrvelLock/X11/X11Kiosk.h"
#include "OrvelModes/Linux/LiveStatusItem.h"
#include "OrvelModes/Windows/Dialogs.h"
#include "OrvelSystem/AccountIdentity.h"
#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/DesktopCorners.h"
#include "OrvelSystem/DesktopSettings.h"
#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/InterfaceSounds.h"
#include "OrvelSystem/Linux/DesktopShortcuts.h"
#include "OrvelSystem/Linux/SessionLocker.h"
#include "OrvelSystem/Linux/UserLock.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/MacOSLock.h"
#include "OrvelSystem/ProcessList.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/ScreenReader.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/Displays.h"

namespace OrvelApp {

using namespace OrvelSystem;
using OrvelAuth::AccountLockoutPolicy;
using OrvelCovers::RunningApp;
namespace Brand = OrvelCore::Brand;

namespace {

// Seconds; a slower check counts as unavailable.
constexpr double passwordTimeout = 5.0;

void log(std::string_view line) {
    fmt::print(stderr, "{}\n", line);
}

std::map<std::string, std::string, std::less<>> environment() {
    std::map<std::string, std::string, std::less<>> values;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const auto equals = text.find('=');
        if (equals == std::string_view::npos) continue;
        values.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return values;
}

void startGuard(bool renews) {
    if (!GuardService::isEnabled()) {
        if (const auto error = GuardService::registerService()) {
            log(fmt::format("{}: could not register the crash guard: {}", Brand::name,
                            error.message()));
            return;
        }
    }
    if (renews)
        GuardService::renew();
    else
        GuardService::kickstart();
}

}  // namespace

LiveSystem::LiveSystem(bool asLoginItem)
    : asLoginItem_(asLoginItem),
      userName_(AccountIdentity::userName()),
      defaults_(loop_, JSONSettingsStore::standardFile(),
                [](std::error_code error) {
                    log(fmt::format("{}: settings: {}", Brand::name, error.message()));
                }),
      markers_(OrvelCore::LockMarkerStore::standard()),
      verifier_(userName_, passwordTimeout, loop_),
      extraQuestions_(defaults_),
      displayAwake_(fmt::format("{} keeps displays awake while locked", Brand::name)) {
    verifier_.onAnswer = [this](const OrvelAuth::PasswordResult& result) {
        passwordAnswered(result);
    };
}

void LiveSystem::passwordAnswered(const OrvelAuth::PasswordResult& result) {
    const bool asked = OrvelAuth::ExtraQuestions::takeAsked();
    if (std::holds_alternative<OrvelAuth::PasswordAccepted>(result)) {
        OrvelAuth::Biometrics::passwordAccepted();
    } else if (asked) {
        extraQuestions_.remember(OrvelAuth::PAMStack::read());
        moreWasAsked_();
    }
}

AppSystem LiveSystem::appSystem() {
    OrvelLock::X11Kiosk::shared().onNeedsDevices = [this](bool needs) {
        hotkeys_.setGrabsDevices(!needs);
    };
    AppSystem system{.loop = loop_,
                     .defaults = defaults_,
                     .markers = markers_,
                     .attemptFile = OrvelCore::AttemptLog::standardFile(),
                     .verifier = verifier_,
                     .hotkeys = hotkeys_,
                     .displayAwake = displayAwake_,
                     .wallClock = [] { return OrvelCore::Date(std::chrono::system_clock::now()); },
                     .kiosk = OrvelLock::KioskSystem::live(loop_),
                     .covers = coverSystem(),
                     .modes = modeSystem(),
                     .menu = menuSystem(),
                     .windows = windowSystem(),
                     .updates = OrvelUpdates::UpdateSystem::live(loop_)};
    system.fullName = AccountIdentity::fullName();
    system.picture = AccountIdentity::picture();
    system.bootSession = BootSession::current();
    // A lock that spares the account takes no passwords. If no locker of the session could take
    // them either, this would shut the owner out for longer than a locked account does.
    system.accountLimit = [this]() -> std::optional<int> {
        if (!SessionLocker::isKnown()) return {};
        return AccountLockoutPolicy::currentLimit(userName_);
    };
    system.accountFailures = [this]() -> std::optional<int> {
        if (!SessionLocker::isKnown()) return {};
        return AccountLockoutPolicy::currentFailures(userName_);
    };
    system.passwordSuffices = [this] {
        const char* const home = std::getenv("HOME");
        const auto stack = OrvelAuth::PAMStack::read();
        return !OrvelAuth::ExtraQuestions::areExpected(stack, home ? home : "") &&
               !extraQuestions_.remembers(stack);
    };
    system.observeAuthentication = [this](AuthenticationHandlers handlers) {
        OrvelAuth::Biometrics::observeLockout(std::move(handlers.fingersLockedOut));
        moreWasAsked_ = std::move(handlers.moreWasAsked);
    };
    system.sessionLockerIsKnown = SessionLocker::isKnown;
    system.biometricsAvailable = OrvelAuth::Biometrics::isAvailable;
    system.blurSupport = OrvelBlur::BlurSupport::current();
    system.lockPresenter = [this](OrvelBlur::BlurBackend backend) {
        return OrvelLock::LockPresenterSystem::live(loop_, backend);
    };
    system.darkAppearance = [] { return Appearance::shared().isDark(); };
    system.reduceTransparency = [] { return Appearance::shared().reducesTransparency(); };
    system.engageMacOSLock = [] { MacOSLock::engage(); };
    system.screenIsLocked = MacOSLock::isScreenLocked;
    // No locker reports an unlock in a way that other programs cannot imitate.
    system.systemUnlockIsProven = false;
    system.observeSession = [this](SessionHandlers handlers) {
        events_.onMacOSLocked = std::move(handlers.macOSLocked);
        events_.onMacOSUnlocked = std::move(handlers.macOSUnlocked);
        events_.onMacOSLockUnknown = std::move(handlers.macOSLockUnknown);
        events_.onWake = std::move(handlers.wake);
        events_.onScreensChanged = std::move(handlers.screensChanged);
        Displays::shared().onChanged = [this] { events_.screensChanged(); };
    };
    system.guardAvailable = [guard = GuardService::executable()] {
        // A guard with another data folder would not see this program's marker.
        return GuardService::isEnabled() && ProcessList::isRunning(guard) &&
               UserLock::isHeld(UserLock::guard);
    };
    system.reservedShortcuts = DesktopShortcuts::reserved();
    system.startGuard = [](bool renews) { std::thread(startGuard, renews).detach(); };
    system.programFile = [] { return ProgramFile::own().state; };
    system.restart = [this](std::vector<std::string> urls) { onRestart(std::move(urls)); };
    system.environment = environment();
    system.asLoginItem = asLoginItem_;
    system.activateApp = [] {};
    system.log = log;
    return system;
}

MenuSystem LiveSystem::menuSystem() {
    // The first call starts the tracking, because the state is not yet known when it returns.
    (void)ScreenReader::isOn();
    return {
        .makeStatusItem =
            [](OrvelModes::StatusMenuController& menu) -> std::unique_ptr<OrvelModes::StatusItem> {
            return std::make_unique<OrvelModes::LiveStatusItem>(menu);
        },
        .panel = OrvelModes::MenuPanelSystem::live(),
        .front =
            [] { return Workspace::shared().frontmostApplication().transform(RunningApp::of); },
        .app =
            [](std::int64_t pid) {
                return Workspace::shared().application(pid).transform(RunningApp::of);
            },
        .nameForBundleID =
            [](const std::string& bundleID) {
                return Workspace::shared().nameOfInstalled(bundleID);
            },
        .iconForBundleID =
            [](const std::string& bundleID) { return Workspace::shared().icon(bundleID); },
        .screenReaderOn = ScreenReader::isOn,
        .quit = [this] { onQuit(); },
    };
}

ModeSystem LiveSystem::modeSystem() {
    using namespace OrvelModes;
    const std::int64_t ownPID = getpid();
    return {.quickBlur =
                [this, ownPID](OrvelBlur::BlurBackend backend, ModeSystem::Look look,
                               std::function<bool()> macLocked) {
                    return QuickBlurSystem::live(loop_, backend, ownPID, std::move(look),
                                                 std::move(macLocked));
                },
            .focusBlur =
                [this, ownPID](OrvelBlur::BlurBackend backend, ModeSystem::Look look) {
                    return FocusBlurSystem::live(loop_, backend, ownPID, std::move(look));
                },
            .observeAppearance =
                [](std::function<void()> changed) {
                    return Appearance::shared().observe(std::move(changed));
                },
            .idle = IdleSources::live(loop_),
            .makeCornerPanel = makeLiveCornerPanel,
            .screens = Displays::frames,
            .feedback = LockFeedbackRunner::Outputs::live(sounds_),
            .interfaceSoundsOn = [] { return InterfaceSounds::enabled(); },
            .toasts = ToastSystem::live()};
}

WindowSystem LiveSystem::windowSystem() {
    using namespace OrvelModes;
    return {
        .settings = SettingsWindowSystem::live(),
        .onboarding = OnboardingWindowSystem::live(),
        .recorderHooks = ShortcutRecorder::Hooks::live,
        .opensAtLogin = LoginItem::isEnabled,
        .setOpensAtLogin =
            [](bool on) { return on ? LoginItem::registerItem() : LoginItem::unregisterItem(); },
        .desktopCorners = DesktopCorners::used,
        .openNotificationSettings = DesktopSettings::openNotificationSettings,
        .openURL = DesktopSettings::openURL,
        .alert = Dialogs::alert,
        .chooseApplications = Dialogs::chooseApplications,
        .uninstall = UninstallSystem::live(loop_, defaults_, [this] { onQuit(); })};
}

CoverSystem LiveSystem::coverSystem() {
    using namespace OrvelCovers;
    const std::int64_t ownPID = getpid();
    CoverSystem covers{
        .makeSurface = [this](const OrvelCore::CoverRequest& request,
                              OrvelBlur::BlurBackend backend,
                              std::function<void()> onClick) -> std::unique_ptr<CoverSurface> {
            LiveCoverSurface::Setting setting{
                .loop = loop_,
                .backend = backend,
                .displays = WindowServer::displayBounds,
                .reduceTransparency = [] { return Appearance::shared().reducesTransparency(); }};
            return std::make_unique<LiveCoverSurface>(request, std::move(setting),
                                                      std::move(onClick));
        },
        .sources = CoverLoop::Sources::live(loop_, ownPID),
        .watcherReads = WindowWatcher::Reads::live(),
        .badges = AppKitBadgePresenter::System::live(),
        .appLock = AppLockSystem::live(loop_, verifier_, ownPID),
        .running = RunningApp::regular,
        .observeWorkspace =
            [](Workspace::Events events) {
                return Workspace::shared().observe(std::move(events));
            }};
    // Showing a panel with the keyboard needs no activation; the app that has the keyboard is
    // active.
    covers.appLock.activateOrvel = [] {};
    covers.appLock.orvelIsActive = [] { return ActiveWindow::shared().isOurs(); };
    return covers;
}

}  // namespace OrvelApp
