#include "OrvelApp/AppDelegate.h"

#include <utility>

#include <fmt/format.h>

#include "OrvelAuth/FingerLockout.h"
#include "OrvelCore/AttemptText.h"
#include "OrvelCore/Brand.h"
#include "OrvelCore/LaunchPolicy.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/Match.h"
#include "OrvelCore/QuitPolicy.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelCore/Text.h"

namespace OrvelApp {

using namespace OrvelCore;
using OrvelSystem::Task;

namespace {

constexpr const char* asksForMore = "Your account asks for more than a password";
constexpr const char* letsNoneLock = "Your desktop lets no other program lock the screen";
constexpr const char* letsNoneCover = "Your desktop lets no program cover others";

}  // namespace

AppDelegate::AppDelegate(AppSystem system)
    : system_(std::move(system)),
      hotkeys_(system_.hotkeys),
      toasts_(system_.loop, system_.modes.toasts),
      settings_(system_.windows.settings) {}
AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    triggers_ = TriggerSettings::load(system_.defaults);
    prefs_ = Preferences::load(system_.defaults);
    const auto backend =
        OrvelBlur::choose(system_.blurSupport.skyLightAvailable, system_.blurSupport.osMajor,
                          system_.blurSupport.verifiedMajors);
    makeLock(backend);
    observeAuthentication();
    system_.observeSession(
        {.macOSLocked = lifetime_.guard([this] { start(session_->macOSLocked()); }),
         .macOSUnlocked = lifetime_.guard([this] { start(session_->macOSUnlocked()); }),
         .macOSLockUnknown = lifetime_.guard([this] { start(session_->macOSLockUnknown()); }),
         .wake = lifetime_.guard([this] {
             session_->screensChanged();
             if (coverLoop_) coverLoop_->nudge();
             if (focusBlur_) focusBlur_->sample();
             woke();
         }),
         .screensChanged = lifetime_.guard([this] {
             session_->screensChanged();
             screensChanged();
         })});
    installCovers(backend);
    installModes(backend);
    installUpdates();
    if (system_.environment.contains("ORVEL_CHECK_UPDATES_NOW")) start(updates_->checkNow());
    installStatusItem();
    refreshIcon();
    installSettings();
    installShortcuts();
    installPreferences();
    applyPreferences();
    applyTriggers();
    registerGuard();
    isLaunched_ = true;
    showFirstScreen();
    // The owner must learn this before the first lock and not because of it.
    if (!system_.passwordSuffices())
        toasts_.show("Your desktop locks the screen", asksForMore, "exclamationmark.lock");
    // After every decision about windows, so that no window opens over a lock that is resumed.
    start(session_->resumeIfMarked());
}

void AppDelegate::makeLock(OrvelBlur::BlurBackend backend) {
    lockModel_ = std::make_unique<OrvelUI::LockCardModel>(system_.fullName, system_.picture,
                                                          system_.biometricsAvailable());
    makeFeedback();
    const auto clock = [&loop = system_.loop] { return loop.uptime(); };
    presenter_ = std::make_unique<OrvelLock::AppKitLockPresenter>(*lockModel_, clock,
                                                                  system_.lockPresenter(backend));
    kiosk_ = std::make_unique<OrvelLock::KioskController>(system_.kiosk);
    handoff_ = std::make_unique<OrvelLock::MacOSHandoff>(system_.engageMacOSLock);
    session_ = std::make_unique<OrvelLock::LockSession>(
        OrvelLock::LockCollaborators{
            .presenter = *presenter_,
            .kiosk = *kiosk_,
            .markers = system_.markers,
            .handoff = *handoff_,
            .verifier = system_.verifier,
            .bootSession = system_.bootSession,
            .clock = clock,
            .wallClock = system_.wallClock,
            // A resumed lock of such an account is handed off, like a lock without a guard.
            .guardAvailable =
                [this] { return system_.passwordSuffices() && system_.guardAvailable(); },
            .biometricsAvailable = system_.biometricsAvailable,
            .accountFailures = system_.accountFailures,
            .screenIsLocked = system_.screenIsLocked,
            .replacesLock =
                [this] { return system_.locksExclusively && system_.sessionLockerIsKnown(); }},
        Backoff::standard(system_.accountLimit()), triggers_.handOffAfter);

    kiosk_->onDisturbed = lifetime_.guard([this] { start(session_->desktopDisturbed()); });
    lockModel_->onSubmit = lifetime_.guard([this](OrvelSystem::Password password) {
        start(session_->submitPassword(std::move(password)));
    });
    presenter_->onBiometricAccepted = lifetime_.guard([this] {
        feedback_->handle(OrvelUI::LockFeedback::TouchIDAccepted{});
        start(session_->biometricAccepted());
    });
    presenter_->onFocusLost = lifetime_.guard([this] { start(session_->focusLost()); });
    presenter_->onReclaimFailed = lifetime_.guard([this] { start(session_->reclaimFailed()); });
    presenter_->onTick = lifetime_.guard([this] { start(session_->tick()); });
    presenter_->onCoverChanged =
        lifetime_.guard([this](bool covered) { lockCoverChanged(covered); });
    presenter_->look = [this] {
        return Looks::lock(prefs_, system_.reduceTransparency(), system_.darkAppearance());
    };
    session_->onFailedAttempt = lifetime_.guard([this](Date date) { recordFailedAttempt(date); });
    session_->keepsFocusOnUnlock = [this] {
        if (quickBlur_ && quickBlur_->isBlurred()) return true;
        return onboarding_ && onboarding_->model.keepsFocusAfterLock();
    };
    session_->onUncovered = [this] {
        if (quickBlur_) quickBlur_->lockEnded();
        if (onboarding_ && onboarding_->model.lockUncovered()) onboarding_->bringBack();
        becameFree();
    };
}

void AppDelegate::observeAuthentication() {
    system_.observeAuthentication(
        {.fingersLockedOut = lifetime_.guard([this] {
             system_.log(fmt::format("{}: fingerprint: {} fingers in a row did not match",
                                     Brand::name, OrvelAuth::FingerLockout::limit));
             // The record is about the lock of the screen. A finger does not get an entry for each
             // mismatch, as a password does, because fingers are often placed badly.
             if (isMacLocked()) recordFailedAttempt(system_.wallClock());
         }),
         .moreWasAsked = lifetime_.guard([this] {
             // The password cannot open this lock, so it must not be the only way out.
             if (isMacLocked()) start(session_->reclaimFailed());
         })});
}

void AppDelegate::leaveLockToDesktop() {
    handoff_->engageMacOSLock();
    if (!system_.sessionLockerIsKnown())
        toasts_.show("No screen locker is running",
                     system_.capabilities.ownLock ? asksForMore : letsNoneLock,
                     "exclamationmark.lock");
}

bool AppDelegate::mayLockApps() {
    const bool canCover = system_.capabilities.appCovers;
    if (canCover && system_.passwordSuffices()) return true;
    toasts_.show("Apps cannot be locked", canCover ? asksForMore : letsNoneCover,
                 "exclamationmark.lock");
    return false;
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
    shortcuts_->onTaken = lifetime_.guard(
        [this](const std::set<ShortcutSet::Action>& taken) { noteTakenShortcuts(taken); });
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
    configureCorner();
    session_->setHandOffAfter(triggers_.handOffAfter);
}

void AppDelegate::registerGuard() {
    if (system_.environment.contains("ORVEL_NO_GUARD")) return;
    // If a lock will be resumed, the old guard may be covering the screen for it.
    guardRenewalWaits_ = resumesLock() || isMacLocked();
    system_.startGuard(!guardRenewalWaits_);
}

bool AppDelegate::lockNow(bool instant, std::function<void(bool)> covered) {
    if (!isLaunched_ || session_->isLocked() || lockStarting_) {
        if (covered) covered(false);
        return false;
    }
    if (!system_.capabilities.ownLock || !system_.passwordSuffices()) {
        leaveLockToDesktop();
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
    becameFree();
}

void AppDelegate::shortcutPressed(ShortcutSet::Action action) {
    if (!isLaunched_) return;
    switch (action) {
        case ShortcutSet::Action::lockMac:
            if (onboarding_ && onboarding_->model.lockShortcutPressed())
                tryLock();
            else
                lockNow(false);
            break;
        case ShortcutSet::Action::lockApp:
            appLock_->shortcutPressed();
            break;
        case ShortcutSet::Action::quickBlur:
            switchQuickBlur(URLCommands::Switch::toggle);
            break;
        case ShortcutSet::Action::focusBlur:
            switchFocusBlur(URLCommands::Switch::toggle);
            break;
    }
}

void AppDelegate::open(const std::vector<std::string>& urls) {
    if (!isLaunched_) return;
    for (const auto& url : urls) {
        const auto command = URLCommands::parse(url, Brand::urlScheme);
        if (!command) continue;
        match(
            *command, [this](URLCommands::Lock) { lockNow(false); },
            [this](URLCommands::PrivateApps apps) { setPrivateApps(apps.change); },
            [this](URLCommands::QuickBlur blur) { switchQuickBlur(blur.change); },
            [this](URLCommands::FocusBlur blur) { switchFocusBlur(blur.change); });
    }
}

void AppDelegate::setPrivateApps(URLCommands::Switch change) {
    if (!isLaunched_) return;
    if (!system_.capabilities.appCovers)
        return toasts_.show("Private Apps is not available", letsNoneCover, "eye.slash");
    privateApps_->apply(change);
    stateChanged();
}

void AppDelegate::switchQuickBlur(URLCommands::Switch change) {
    if (system_.capabilities.screenBlur) quickBlur_->apply(change);
}

void AppDelegate::switchFocusBlur(URLCommands::Switch change) {
    if (system_.capabilities.focusBlur) return focusBlur_->apply(change);
    toasts_.show("Focus Blur is not available", letsNoneCover, "eye.slash");
}

void AppDelegate::screensChanged() {
    if (coverLoop_) coverLoop_->nudge();
    if (quickBlur_) quickBlur_->screensChanged();
    if (focusBlur_) focusBlur_->sample();
    if (hotCorner_) configureCorner();
}

void AppDelegate::reopen() {
    if (!isLaunched_) return;
    switch (LaunchPolicy::reopenScreen(onboarding_ != nullptr)) {
        case LaunchScreen::onboarding:
            onboarding_->bringBack();
            break;
        case LaunchScreen::settings:
            settings_.show();
            break;
        case LaunchScreen::nothing:
            break;
    }
}

bool AppDelegate::applicationShouldTerminate(std::optional<std::uint32_t> quitCode) const {
    return QuitPolicy::mayQuit(appLocks(), isMacLocked(), QuitPolicy::reason(quitCode));
}

int AppDelegate::appLocks() const {
    return appLock_ ? static_cast<int>(appLock_->lockedPIDs().size()) : 0;
}

void AppDelegate::lockCoverChanged(bool covered) {
    macCovered_ = covered;
    if (covered) {
        // A locker may have started since the launch. Reading the limit here does not delay the
        // cover.
        session_->setAccountLimit(system_.accountLimit());
        shortcutRecorder_->stop();
        feedback_->handle(OrvelUI::LockFeedback::Locked{system_.biometricsAvailable()});
        lockStartedAt_ = system_.wallClock();
        if (prefs_.keepsDisplaysAwake) system_.displayAwake.hold();
        // Otherwise it would still be open after the lock.
        panelPresenter_->close(false);
    } else {
        system_.displayAwake.release();
        reportAttempts();
        feedback_->handle(OrvelUI::LockFeedback::Unlocked{});
    }
    stateChanged();
}

void AppDelegate::recordFailedAttempt(Date date) {
    attemptLog_.record(date);
    attemptLog_.prune(system_.wallClock());
    // If the record cannot be written, it stays in memory for this run.
    (void)attemptLog_.save(system_.attemptFile);
    showAttempts();
}

void AppDelegate::showAttempts() {
    const auto& attempts = attemptLog_.attempts();
    settings_.model.preferences.attempts.set({attempts.rbegin(), attempts.rend()});
}

void AppDelegate::reportAttempts() {
    const auto since = std::exchange(lockStartedAt_, {});
    if (!since) return;
    const auto attempts = attemptLog_.since(*since);
    if (attempts.empty()) return;
    toasts_.show(AttemptText::toastTitle(static_cast<int>(attempts.size())),
                 AttemptText::toastDetail(attempts, currentLocale(), currentTimeZone()),
                 "exclamationmark.lock");
}

void AppDelegate::start(Task<void> task) {
    OrvelSystem::spawn(system_.loop, std::move(task));
}

}  // namespace OrvelApp
