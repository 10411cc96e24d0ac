#include "OrvelLock/LockSession.h"

#include <algorithm>
#include <utility>

#include "OrvelCore/Match.h"

namespace OrvelLock {

using OrvelCore::LockEffect;
using OrvelCore::LockEvent;
using OrvelSystem::Task;

namespace {

/// Seconds.
constexpr double focusLossWindow = 10.0;
constexpr std::size_t focusLossLimit = 3;
/// Seconds that a reclaim of the keyboard may take. A shorter absence is only a change of holder.
constexpr double lostDesktopPatience = 0.25;
/// Seconds that a system lock has to appear after it reported that it is on. Lockers that are
/// started as programs take up to two seconds.
constexpr double systemLockPatience = 5;

}  // namespace

LockSession::LockSession(LockCollaborators around, OrvelCore::Backoff backoff,
                         std::optional<double> handOffAfter)
    : around_(std::move(around)), machine_(std::move(backoff)) {
    machine_.handOffAfter = handOffAfter;
}

bool LockSession::willResume() const {
    return !machine_.isLocked() && around_.markers.activeMarker(around_.bootSession).has_value();
}

Task<void> LockSession::lock() {
    if (!machine_.isLocked() && around_.replacesLock()) {
        isMarked_ = mark();
        if (!isMarked_ || !around_.guardAvailable() || accountIsNearLimit()) {
            if (std::exchange(isMarked_, false)) around_.markers.clear();
            around_.handoff.engageMacOSLock();
            co_return;
        }
    }
    co_await send(LockEvent::lockRequested);
}

Task<void> LockSession::biometricAccepted() {
    return send(LockEvent::biometricAccepted);
}

Task<void> LockSession::macOSLocked() {
    return send(LockEvent::macOSLocked);
}

Task<void> LockSession::macOSUnlocked() {
    co_await send(LockEvent::macOSUnlocked);
    co_await holdDesktop();
}

Task<void> LockSession::macOSLockUnknown() {
    co_await send(LockEvent::macOSLockUnknown);
    co_await holdDesktop();
}

Task<void> LockSession::desktopDisturbed() {
    return holdDesktop();
}

Task<void> LockSession::tick() {
    co_await send(LockEvent::clockTick);
    co_await holdDesktop();
}

Task<void> LockSession::submitPassword(OrvelSystem::Password password) {
    // Checked before the attempt, because this lock must not move the account's counter towards its
    // lockout.
    if (accountIsNearLimit()) {
        co_await send(LockEvent::accountNearLimit);
        co_return;
    }
    const auto effects = machine_.handle(LockEvent::passwordSubmitted, around_.clock());
    const LockEffect verify = OrvelCore::LockEffects::VerifyPassword{};
    if (std::ranges::find(effects, verify) == effects.end()) co_return;
    around_.presenter.showVerifying();
    auto check = around_.verifier.verify(std::move(password));
    const auto result = co_await check;
    auto answer = LockEvent::passwordUnavailable;
    if (std::holds_alternative<OrvelAuth::PasswordAccepted>(result)) {
        answer = LockEvent::passwordAccepted;
    } else if (std::holds_alternative<OrvelAuth::PasswordRejected>(result)) {
        onFailedAttempt(around_.wallClock());
        answer = LockEvent::passwordRejected;
    }
    co_await send(answer);
}

Task<void> LockSession::focusLost() {
    if (!machine_.isLocked()) co_return;
    const double now = around_.clock();
    std::erase_if(focusLosses_, [now](double loss) { return now - loss >= focusLossWindow; });
    focusLosses_.push_back(now);
    // Something on this desktop keeps taking the keyboard, and without it the card cannot be
    // unlocked.
    if (focusLosses_.size() >= focusLossLimit) co_await send(LockEvent::handOff);
}

Task<void> LockSession::reclaimFailed() {
    if (!machine_.isLocked() || machine_.isHandedOff()) co_return;
    co_await send(LockEvent::handOff);
}

Task<void> LockSession::resumeIfMarked() {
    if (!willResume()) co_return;
    wasLeft_ = around_.markers.activeMarker(around_.bootSession)->isHandedOff;
    co_await send(LockEvent::lockRequested);
    // The timed hand-off happens once in a lock, even if the locker has not come.
    machine_.timedHandOffDone = machine_.timedHandOffDone || wasLeft_;
    // The lock that the guard engaged was reported before this process listened. Without this event
    // its unlock would not count.
    if (machine_.isLocked() && around_.screenIsLocked()) co_await send(LockEvent::macOSLocked);
}

void LockSession::screensChanged() {
    if (machine_.isLocked()) around_.presenter.reconcileScreens();
}

Task<void> LockSession::send(LockEvent event) {
    const auto effects = machine_.handle(event, around_.clock());
    for (const LockEffect& effect : effects) co_await perform(effect);
}

Task<void> LockSession::perform(LockEffect effect) {
    using namespace OrvelCore::LockEffects;
    auto& presenter = around_.presenter;
    OrvelCore::match(
        effect, [&](const ShowCooldown& cooldown) { presenter.showCooldown(cooldown.until); },
        [&](const Uncover&) { uncover(); },
        [&](const ShowWrongPassword&) { presenter.showWrongPassword(); },
        [&](const ShowPasswordsPaused&) { presenter.showPasswordsPaused(); },
        [&](const ShowReady&) { presenter.showReady(); },
        [&](const ShowUnavailable&) { presenter.showUnavailable(); },
        [&](const EngageMacOSLock&) { engageMacOSLock(); },
        // Only `submitPassword` has the password.
        [](const VerifyPassword&) {},
        // It must wait, so it is performed below.
        [](const Cover&) {});

    if (std::holds_alternative<Cover>(effect)) co_await cover();
    // With neither a password nor a finger, nothing could open the lock.
    if (std::holds_alternative<ShowPasswordsPaused>(effect) && !around_.biometricsAvailable())
        co_await send(LockEvent::handOff);
}

// The marker is written before anything is shown, so that a crash always leaves a record. The
// desktop is taken only when the lock would survive a crash; otherwise the lock is handed off.
Task<void> LockSession::cover() {
    const bool written = std::exchange(isMarked_, false) || mark();
    around_.kiosk.prepare();
    around_.presenter.cover();
    if (!written || !around_.guardAvailable()) {
        co_await send(LockEvent::handOff);
        co_return;
    }
    if (accountIsNearLimit()) co_await send(LockEvent::accountNearLimit);
    auto takeover = around_.kiosk.engage();
    const bool engaged = co_await takeover;
    if (!machine_.isLocked()) {
        // The lock ended during the wait, so the desktop was taken after it had been given back.
        around_.kiosk.release(!keepsFocusOnUnlock());
    } else if (machine_.isHandedOff()) {
        // The lock was handed off during the wait, and the system's lock must find the desktop
        // free.
        around_.kiosk.yield();
    } else if (!engaged) {
        co_await send(LockEvent::handOff);
    }
}

void LockSession::uncover() {
    around_.presenter.uncover();
    around_.markers.clear();
    around_.kiosk.release(!keepsFocusOnUnlock());
    focusLosses_.clear();
    desktopLostAt_.reset();
    wasLeft_ = false;
    onUncovered();
}

void LockSession::engageMacOSLock() {
    desktopLostAt_.reset();
    systemLockMissingSince_.reset();
    systemLockWasUp_ = false;
    if (around_.replacesLock()) return leaveToSystemLock();
    around_.kiosk.yield();
    around_.handoff.engageMacOSLock();
}

/// The system's lock can come up only once this process has ended. Until then, and where nothing
/// would start it, this lock stays, and the machine shows the card again.
void LockSession::leaveToSystemLock() {
    if (!around_.mayLeave()) return;
    // Without the desktop, either another locker already has it, or the answer is still awaited.
    if (!around_.kiosk.reassert()) return;
    wasLeft_ = true;
    if (mark()) around_.leave();
}

/// Takes the desktop back while this lock is in charge. Runs on every tick, after disturbances and
/// whenever the macOS lock ends, so it also runs right after a hand-off.
Task<void> LockSession::holdDesktop() {
    if (machine_.isHandedOff()) co_await watchSystemLock();
    if (!machine_.isLocked() || machine_.isHandedOff()) co_return;
    if (around_.kiosk.reassert()) {
        desktopLostAt_.reset();
        co_return;
    }
    const double now = around_.clock();
    if (!desktopLostAt_) desktopLostAt_ = now;
    // Each hand-off lasts two seconds before the desktop is tried again, so a desktop that another
    // program keeps causes slow retries and no busy loop.
    if (now - *desktopLostAt_ >= lostDesktopPatience) co_await send(LockEvent::handOff);
}

/// A system lock that reported that it is on may still never come up, or end without a report. The
/// machine relies on reports alone, so without this check the owner could face a screen that
/// nothing opens.
Task<void> LockSession::watchSystemLock() {
    const auto& handedOff = std::get<OrvelCore::LockPhases::HandedOff>(machine_.phase);
    if (!handedOff.confirmed) co_return;
    if (around_.kiosk.isHeldBySystemLock()) {
        systemLockWasUp_ = true;
        systemLockMissingSince_.reset();
        co_return;
    }
    const double now = around_.clock();
    if (!systemLockMissingSince_) systemLockMissingSince_ = now;
    const double limit = systemLockWasUp_ ? lostDesktopPatience : systemLockPatience;
    if (now - *systemLockMissingSince_ >= limit) co_await send(LockEvent::macOSLockUnknown);
}

bool LockSession::mark() {
    return around_.markers
        .write({.lockedAt = around_.wallClock(),
                .bootSession = around_.bootSession,
                .failures = 0,
                .isHandedOff = wasLeft_})
        .has_value();
}

bool LockSession::accountIsNearLimit() const {
    if (!machine_.backoff.accountLimit) return false;
    const auto failures = around_.accountFailures();
    return failures && !machine_.backoff.passwordsAllowed(*failures);
}

}  // namespace OrvelLock
