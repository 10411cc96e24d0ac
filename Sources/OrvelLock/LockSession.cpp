#include "OrvelLock/LockSession.h"

#include <algorithm>
#include <utility>

#include "OrvelCore/Match.h"

namespace OrvelLock {

using OrvelCore::LockEffect;
using OrvelCore::LockEvent;
using OrvelSystem::Task;

namespace {

constexpr double focusLossWindow = 10.0;
constexpr std::size_t focusLossLimit = 3;
/// As long as a reclaim of the keyboard may take: a desktop that is missing for less was only
/// changing hands.
constexpr double lostDesktopPatience = 0.25;
/// Seconds that a system lock which said that it is on gets to come up. Lockers that are started as
/// programs take up to two here.
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
    // Before the attempt is made: the account's counter must not move towards
    // its lockout because of this lock.
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
    // Something on this desktop keeps taking the keyboard, and a card without it cannot be
    // unlocked.
    if (focusLosses_.size() >= focusLossLimit) co_await send(LockEvent::handOff);
}

Task<void> LockSession::reclaimFailed() {
    if (!machine_.isLocked() || machine_.isHandedOff()) co_return;
    co_await send(LockEvent::handOff);
}

Task<void> LockSession::resumeIfMarked() {
    if (!willResume()) co_return;
    co_await send(LockEvent::lockRequested);
    // The lock that the guard engaged told of itself while nothing was listening, and without
    // this event its unlock would not count.
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
        // Only `submitPassword` holds the password.
        [](const VerifyPassword&) {},
        // It waits, which nothing in here can.
        [](const Cover&) {});

    if (std::holds_alternative<Cover>(effect)) co_await cover();
    // With neither a password nor a finger nothing would be left to open the lock.
    if (std::holds_alternative<ShowPasswordsPaused>(effect) && !around_.biometricsAvailable())
        co_await send(LockEvent::handOff);
}

// The crash record is there before anything shows, and the desktop is taken only once the lock is
// known to be safe to run: one that would not survive a crash is not run.
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
        // It was handed off during the wait, and the system's lock must find the desktop free.
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
    onUncovered();
}

void LockSession::engageMacOSLock() {
    desktopLostAt_.reset();
    systemLockMissingSince_.reset();
    systemLockWasUp_ = false;
    around_.kiosk.yield();
    around_.handoff.engageMacOSLock();
}

/// Takes the desktop back while the lock is this one's to keep. It runs on every tick and on every
/// unlock of macOS, and so also when a hand-off has just come back.
Task<void> LockSession::holdDesktop() {
    if (machine_.isHandedOff()) co_await watchSystemLock();
    if (!machine_.isLocked() || machine_.isHandedOff()) co_return;
    if (around_.kiosk.reassert()) {
        desktopLostAt_.reset();
        co_return;
    }
    const double now = around_.clock();
    if (!desktopLostAt_) desktopLostAt_ = now;
    // Each hand-off lasts its two seconds before the desktop is tried again, so a desktop that
    // stays in other hands makes a slow round, never a spin.
    if (now - *desktopLostAt_ >= lostDesktopPatience) co_await send(LockEvent::handOff);
}

/// A system lock that said that it is on may still never come up, or go without a word. The machine
/// waits for its word alone, so the owner would face a screen that nothing opens.
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
    const double patience = systemLockWasUp_ ? lostDesktopPatience : systemLockPatience;
    if (now - *systemLockMissingSince_ >= patience) co_await send(LockEvent::macOSLockUnknown);
}

bool LockSession::mark() {
    return around_.markers
        .write({.lockedAt = around_.wallClock(), .bootSession = around_.bootSession, .failures = 0})
        .has_value();
}

bool LockSession::accountIsNearLimit() const {
    const auto limit = machine_.backoff.accountLimit;
    if (!limit) return false;
    const auto failures = around_.accountFailures();
    return failures && *failures >= *limit - 2;
}

}  // namespace OrvelLock
