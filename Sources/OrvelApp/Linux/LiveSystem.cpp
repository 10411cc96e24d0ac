#include "OrvelApp/Linux/LiveSystem.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>
#include <variant>

#include <fmt/format.h>
#include <unistd.h>

#include "OrvelApp/SharedForms.h"
#include "OrvelApp/Wayland/WaylandForms.h"
#include "OrvelApp/X11/X11Forms.h"
#include "OrvelAuth/AccountLockoutPolicy.h"
#include "OrvelAuth/Biometrics.h"
#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/AccountIdentity.h"
#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/InterfaceSounds.h"
#include "OrvelSystem/Linux/DesktopShortcuts.h"
#include "OrvelSystem/Linux/SessionLocker.h"
#include "OrvelSystem/Linux/UserLock.h"
#include "OrvelSystem/MacOSLock.h"
#include "OrvelSystem/ProcessList.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/ScreenReader.h"

namespace OrvelApp {

using namespace OrvelSystem;
using OrvelAuth::AccountLockoutPolicy;
namespace Brand = OrvelCore::Brand;

namespace {

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
    if (const auto error = GuardService::start(renews))
        log(fmt::format("{}: could not register the crash guard: {}", Brand::name,
                        error.message()));
}

}  // namespace

LiveSystem::LiveSystem(bool asLoginItem, SessionKind kind)
    : asLoginItem_(asLoginItem),
      userName_(AccountIdentity::userName()),
      defaults_(loop_, JSONSettingsStore::standardFile(),
                [](std::error_code error) {
                    log(fmt::format("{}: settings: {}", Brand::name, error.message()));
                }),
      markers_(OrvelCore::LockMarkerStore::standard()),
      verifier_(userName_, OrvelAuth::passwordTimeout, loop_),
      extraQuestions_(defaults_),
      forms_(kind == SessionKind::wayland ? makeWaylandForms(loop_, verifier_)
                                          : makeX11Forms(loop_, verifier_)),
      displayAwake_(fmt::format("{} keeps displays awake while locked", Brand::name)) {
    verifier_.onAnswer = [this](const OrvelAuth::PasswordResult& result) {
        passwordAnswered(result);
    };
}

void LiveSystem::passwordAnswered(const OrvelAuth::PasswordResult& result) {
    const auto question = OrvelAuth::ExtraQuestions::takeAsked();
    if (std::holds_alternative<OrvelAuth::PasswordAccepted>(result)) {
        OrvelAuth::Biometrics::passwordAccepted();
    } else if (question) {
        extraQuestions_.remember(OrvelAuth::PAMStack::read());
        moreWasAsked_(*question);
    }
}

AppSystem LiveSystem::appSystem() {
    AppSystem system{.loop = loop_,
                     .defaults = defaults_,
                     .markers = markers_,
                     .attemptFile = OrvelCore::AttemptLog::standardFile(),
                     .verifier = verifier_,
                     .hotkeys = *forms_.hotkeys,
                     .displayAwake = displayAwake_,
                     .wallClock = [] { return OrvelCore::Date(std::chrono::system_clock::now()); },
                     .kiosk = forms_.kiosk,
                     .covers = forms_.covers,
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
        if (!SessionLocker::isAvailable()) return {};
        return AccountLockoutPolicy::currentLimit(userName_);
    };
    system.accountFailures = [this]() -> std::optional<int> {
        if (!SessionLocker::isAvailable()) return {};
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
    system.sessionLockerIsAvailable = SessionLocker::isAvailable;
    system.biometricsAvailable = OrvelAuth::Biometrics::isAvailable;
    system.blurSupport = forms_.blurSupport;
    system.lockPresenter = forms_.lockPresenter;
    system.darkAppearance = [] { return Appearance::shared().isDark(); };
    system.reduceTransparency = [] { return Appearance::shared().reducesTransparency(); };
    system.capabilities = forms_.capabilities;
    system.locksExclusively = forms_.locksExclusively;
    system.leave = [this] { onLeave(); };
    system.engageMacOSLock = [this] {
        // It would be refused.
        if (!forms_.locksExclusively || !forms_.holdsLock()) MacOSLock::engage();
    };
    system.screenIsLocked = MacOSLock::isScreenLocked;
    system.delaySleep = [this](bool delays) {
        if (!delays)
            sleepDelay_.reset();
        else if (!sleepDelay_ || !sleepDelay_->isTaken())
            sleepDelay_.emplace(QStringLiteral("sleep"),
                                fmt::format("{} locks the screen first", Brand::name),
                                QStringLiteral("delay"));
    };
    // No locker reports an unlock in a way that other programs cannot imitate.
    system.systemUnlockIsProven = false;
    system.observeSession = [this](SessionHandlers handlers) {
        events_.onMacOSLocked = std::move(handlers.macOSLocked);
        events_.onMacOSUnlocked = std::move(handlers.macOSUnlocked);
        events_.onMacOSLockUnknown = std::move(handlers.macOSLockUnknown);
        events_.onSleep = std::move(handlers.sleep);
        events_.onWake = std::move(handlers.wake);
        events_.onLockRequested = std::move(handlers.lockRequested);
        events_.onScreensChanged = std::move(handlers.screensChanged);
        forms_.observeScreens([this] { events_.screensChanged(); });
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
    auto menu = SharedForms::menu();
    menu.makeStatusItem = forms_.makeStatusItem;
    menu.panel = forms_.menuPanel;
    // The desktops have no such setting.
    menu.fullKeyboardAccess = [] { return false; };
    menu.quit = [this] { onQuit(); };
    return menu;
}

ModeSystem LiveSystem::modeSystem() {
    using namespace OrvelModes;
    auto idle = IdleSources::live(loop_);
    idle.idleSeconds = forms_.idleSeconds;
    return {.quickBlur = forms_.quickBlur,
            .focusBlur = forms_.focusBlur,
            .observeAppearance =
                [](std::function<void()> changed) {
                    return Appearance::shared().observe(std::move(changed));
                },
            .idle = std::move(idle),
            .makeCornerPanel = forms_.makeCornerPanel,
            .screens = forms_.screens,
            .feedback = LockFeedbackRunner::Outputs::live(sounds_),
            .interfaceSoundsOn = [] { return InterfaceSounds::enabled(); },
            .toasts = forms_.toasts};
}

WindowSystem LiveSystem::windowSystem() {
    auto windows = SharedForms::windows(loop_, defaults_, [this] { onQuit(); });
    windows.recorderHooks = forms_.recorderHooks;
    return windows;
}

}  // namespace OrvelApp
