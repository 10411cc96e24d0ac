#include "OrvelApp/AppDelegate.h"

#include <utility>

#include <fmt/format.h>

#include "OrvelCore/Brand.h"
#include "OrvelCore/LaunchPolicy.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/Match.h"
#include "OrvelCore/QuitPolicy.h"
#include "OrvelCore/Shortcut.h"

namespace OrvelApp {

using namespace OrvelCore;
using OrvelSystem::Task;

namespace {

// Four tries cost nothing; from the fifth failure on each one waits longer, up to an hour.
constexpr int freeAttempts = 5;
const std::vector<double> schedule{60, 300, 900, 3600};

}  // namespace

AppDelegate::AppDelegate(AppSystem system)
    : system_(std::move(system)), hotkeys_(system_.hotkeys) {}
AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    triggers_ = TriggerSettings::load(system_.defaults);
    prefs_ = Preferences::load(system_.defaults);
    const auto backend =
        OrvelBlur::choose(system_.blurSupport.skyLightAvailable, system_.blurSupport.osMajor,
                          system_.blurSupport.verifiedMajors);
    makeLock(backend);
    system_.observeSession(
        {.macOSLocked = lifetime_.guard([this] { start(session_->macOSLocked()); }),
         .macOSUnlocked = lifetime_.guard([this] { start(session_->macOSUnlocked()); }),
         .wake = lifetime_.guard([this] {
             session_->screensChanged();
             if (coverLoop_) coverLoop_->nudge();
             woke();
         }),
         .screensChanged = lifetime_.guard([this] {
             session_->screensChanged();
             screensChanged();
         })});
    installCovers(backend);
    installUpdates();
    if (system_.environment.contains("ORVEL_CHECK_UPDATES_NOW")) start(updates_->checkNow());
    installStatusItem();
    refreshIcon();
    installShortcuts();
    attemptLog_ = AttemptLog::load(system_.attemptFile);
    attemptLog_.prune(system_.wallClock());
    applyPreferences();
    applyTriggers();
    registerGuard();
    // After every decision about windows, so that none opens over a lock that comes back.
    start(session_->resumeIfMarked());
}

void AppDelegate::makeLock(OrvelBlur::BlurBackend backend) {
    lockModel_ = std::make_unique<OrvelUI::LockCardModel>(system_.fullName, system_.picture,
                                                          system_.biometricsAvailable());
    const auto clock = [&loop = system_.loop] { return loop.uptime(); };
    presenter_ = std::make_unique<OrvelLock::AppKitLockPresenter>(*lockModel_, clock,
                                                                  system_.lockPresenter(backend));
    kiosk_ = std::make_unique<OrvelLock::KioskController>(system_.kiosk);
    handoff_ = std::make_unique<OrvelLock::MacOSHandoff>(system_.engageMacOSLock);
    session_ = std::make_unique<OrvelLock::LockSession>(
        OrvelLock::LockCollaborators{.presenter = *presenter_,
                                     .kiosk = *kiosk_,
                                     .markers = system_.markers,
                                     .handoff = *handoff_,
                                     .verifier = system_.verifier,
                                     .bootSession = system_.bootSession,
                                     .clock = clock,
                                     .wallClock = system_.wallClock,
                                     .guardAvailable = system_.guardAvailable,
                                     .biometricsAvailable = system_.biometricsAvailable,
                                     .accountFailures = system_.accountFailures,
                                     .screenIsLocked = system_.screenIsLocked},
        Backoff{freeAttempts, schedule, system_.accountLimit}, triggers_.handOffAfter);

    lockModel_->onSubmit = lifetime_.guard([this](OrvelSystem::Password password) {
        start(session_->submitPassword(std::move(password)));
    });
    presenter_->onBiometricAccepted =
        lifetime_.guard([this] { start(session_->biometricAccepted()); });
    presenter_->onFocusLost = lifetime_.guard([this] { start(session_->focusLost()); });
    presenter_->onReclaimFailed = lifetime_.guard([this] { start(session_->reclaimFailed()); });
    presenter_->onTick = lifetime_.guard([this] { start(session_->tick()); });
    presenter_->onCoverChanged =
        lifetime_.guard([this](bool covered) { lockCoverChanged(covered); });
    presenter_->look = [this] {
        return Looks::lock(prefs_, system_.reduceTransparency(), system_.darkAppearance());
    };
    session_->onFailedAttempt = lifetime_.guard([this](Date date) { recordFailedAttempt(date); });
}

void AppDelegate::installShortcuts() {
    shortcuts_ = std::make_unique<OrvelModes::ShortcutRegistrar>(
        [this](const Shortcut& shortcut, std::function<void()> handler) -> std::function<void()> {
            const auto number = hotkeys_.registerHotkey(shortcut, std::move(handler));
            if (!number) return nullptr;
            return lifetime_.guard([this, number = *number] { hotkeys_.unregister(number); });
        });
    shortcuts_->onPressed =
        lifetime_.guard([this](ShortcutSet::Action action) { shortcutPressed(action); });
    shortcuts_->onTaken = lifetime_.guard([this](const std::set<ShortcutSet::Action>& taken) {
        for (const auto action : taken) {
            system_.log(fmt::format(
                "{}: {}: Another app already uses this shortcut, so it does nothing here.",
                Brand::name, title(action)));
        }
    });
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
    shortcuts_->apply(prefs_.shortcuts);
    appLock_->setUnlockShortcut(prefs_.shortcuts.lockApp);
}

void AppDelegate::applyTriggers() {
    triggers_.save(system_.defaults);
    session_->setHandOffAfter(triggers_.handOffAfter);
}

void AppDelegate::registerGuard() {
    if (!system_.environment.contains("ORVEL_NO_GUARD")) system_.startGuard();
}

bool AppDelegate::lockNow(bool instant, std::function<void(bool)> covered) {
    if (!session_ || session_->isLocked() || lockStarting_) {
        if (covered) covered(false);
        return false;
    }
    appLock_->macLocked();
    presenter_->instantNextCover = instant;
    lockStarting_ = true;
    system_.activateApp();
    start(lock(std::move(covered)));
    return true;
}

Task<void> AppDelegate::lock(std::function<void(bool)> covered) {
    co_await session_->lock();
    lockStarting_ = false;
    if (covered) covered(macCovered_);
}

void AppDelegate::shortcutPressed(ShortcutSet::Action action) {
    switch (action) {
        case ShortcutSet::Action::lockMac:
            lockNow(false);
            break;
        case ShortcutSet::Action::lockApp:
            appLock_->shortcutPressed();
            break;
        case ShortcutSet::Action::quickBlur:
        case ShortcutSet::Action::focusBlur:
            break;
    }
}

void AppDelegate::open(const std::vector<std::string>& urls) {
    for (const auto& url : urls) {
        const auto command = URLCommands::parse(url, Brand::urlScheme);
        if (!command) continue;
        match(
            *command, [this](URLCommands::Lock) { lockNow(false); },
            [this](URLCommands::PrivateApps apps) { setPrivateApps(apps.change); },
            [](URLCommands::QuickBlur) {}, [](URLCommands::FocusBlur) {});
    }
}

void AppDelegate::setPrivateApps(URLCommands::Switch change) {
    privateApps_->apply(change);
    refreshIcon();
}

void AppDelegate::screensChanged() {
    if (coverLoop_) coverLoop_->nudge();
}

bool AppDelegate::applicationShouldTerminate(std::optional<std::uint32_t> quitCode) const {
    return QuitPolicy::mayQuit(appLock_ ? static_cast<int>(appLock_->lockedPIDs().size()) : 0,
                               isMacLocked(), QuitPolicy::reason(quitCode));
}

void AppDelegate::lockCoverChanged(bool covered) {
    macCovered_ = covered;
    if (covered) {
        lockStartedAt_ = system_.wallClock();
        if (prefs_.keepsDisplaysAwake) system_.displayAwake.hold();
    } else {
        system_.displayAwake.release();
        lockStartedAt_.reset();
    }
    // It would still be there when the lock is over.
    if (covered) panelPresenter_->close(false);
    refreshIcon();
}

void AppDelegate::recordFailedAttempt(Date date) {
    attemptLog_.record(date);
    attemptLog_.prune(system_.wallClock());
    // What could not be written lives on in memory, as the user's record for this run.
    (void)attemptLog_.save(system_.attemptFile);
}

void AppDelegate::start(Task<void> task) {
    OrvelSystem::spawn(system_.loop, std::move(task));
}

}  // namespace OrvelApp
