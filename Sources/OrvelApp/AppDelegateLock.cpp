#include <utility>

#include <fmt/format.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelAuth/FingerLockout.h"
#include "OrvelCore/AttemptText.h"
#include "OrvelCore/Brand.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/Text.h"

namespace OrvelApp {

using namespace OrvelCore;
using OrvelSystem::Task;

namespace {

// In characters; a longer caption would be cut off.
constexpr std::size_t longestQuestion = 18;

constexpr const char* letsNoneLock = "Your desktop lets no other program lock the screen";

}  // namespace

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
                [this] { return system_.locksExclusively && system_.sessionLockerIsAvailable(); },
            .mayLeave = system_.guardAvailable,
            .leave = system_.leave},
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

void AppDelegate::makeFeedback() {
    feedback_ = std::make_unique<OrvelModes::LockFeedbackRunner>(
        system_.modes.feedback, [this] { return prefs_.soundsOn; }, system_.modes.interfaceSoundsOn,
        system_.wallClock);
    lockModel_->onStatusChange = [this](const OrvelUI::LockCardModel::Status& status) {
        feedback_->handle(OrvelUI::LockFeedback::StatusChanged{status});
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
         .moreWasAsked = lifetime_.guard([this](const std::string& question) {
             const auto asked = Text::trim(question.substr(0, question.find(':')));
             const auto hint = asked.empty()
                                   ? "Password, a space and the answer"
                                   : fmt::format("Password, a space and: {}",
                                                 Text::firstCharacters(asked, longestQuestion));
             if (!isMacLocked())
                 return toasts_.show("Your account asks for more", hint, "exclamationmark.lock");
             lockModel_->awayMessage.set(hint);
             // Another locker may have a field for the answer.
             start(session_->reclaimFailed());
         })});
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
    if (!mayLockScreen()) {
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
    if (sleep_) sleep_->screenCovered();
    becameFree();
}

void AppDelegate::leaveLockToDesktop() {
    handoff_->engageMacOSLock();
    if (!system_.sessionLockerIsAvailable())
        toasts_.show("No screen locker is running",
                     system_.capabilities.ownLock ? asksForMore : letsNoneLock,
                     "exclamationmark.lock");
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
        lockModel_->awayMessage.set(prefs_.awayMessage);
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

}  // namespace OrvelApp
