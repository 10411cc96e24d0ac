#include "OrvelCore/LockMachine.h"

#include <algorithm>
#include <limits>

#include "OrvelCore/Match.h"

namespace OrvelCore {

using namespace LockPhases;
using namespace LockEffects;

namespace {

// In seconds. A macOS lock that has not been confirmed by then is assumed to have failed; the card
// must return, or the user could not unlock.
constexpr double confirmationTimeout = 2;

}  // namespace

int LockMachine::failures() const {
    return match(
        phase, [](const Idle&) { return 0; }, [](const auto& running) { return running.failures; });
}

std::vector<LockEffect> LockMachine::handle(LockEvent event, double now) {
    // A tick that triggers the hand-off has no other effect, so this check precedes the table.
    if (event == LockEvent::clockTick && isLocked() && !isHandedOff() && !timedHandOffDone &&
        handOffAfter && now - lockedAt >= *handOffAfter) {
        timedHandOffDone = true;
        return handOff(now);
    }

    if (!isLocked()) {
        if (event != LockEvent::lockRequested) return {};
        macOSLockedDuringLock = false;
        timedHandOffDone = false;
        lockedAt = now;
        phase = Locked{};
        return {Cover{}};
    }

    switch (event) {
        case LockEvent::lockRequested:
            return {};
        case LockEvent::passwordSubmitted:
            if (!std::holds_alternative<Locked>(phase)) return {};
            phase = Verifying{failures()};
            return {VerifyPassword{}};
        case LockEvent::passwordAccepted:
            if (!std::holds_alternative<Verifying>(phase)) return {};
            phase = Idle{};
            return {Uncover{}};
        case LockEvent::passwordRejected:
            if (!std::holds_alternative<Verifying>(phase)) return {};
            return reject(now);
        case LockEvent::passwordUnavailable:
            if (!std::holds_alternative<Verifying>(phase)) return {};
            phase = Locked{failures()};
            return {ShowUnavailable{}};
        case LockEvent::biometricAccepted:
            phase = Idle{};
            return {Uncover{}};
        case LockEvent::clockTick: {
            const auto* coolingDown = std::get_if<CoolingDown>(&phase);
            const auto* handedOff = std::get_if<HandedOff>(&phase);
            const bool isOver = (coolingDown && now >= coolingDown->until) ||
                                (handedOff && !handedOff->confirmed &&
                                 now - handedOff->since >= confirmationTimeout);
            if (!isOver) return {};
            phase = Locked{failures()};
            return {ShowReady{}};
        }
        case LockEvent::handOff:
            if (isHandedOff()) return {};
            return handOff(now);
        case LockEvent::macOSLocked:
            macOSLockedDuringLock = true;
            if (auto* handedOff = std::get_if<HandedOff>(&phase)) handedOff->confirmed = true;
            return {};
        case LockEvent::macOSUnlocked:
            return macOSUnlocked();
        case LockEvent::macOSLockUnknown:
            return takeBack();
        case LockEvent::accountNearLimit:
            if (!std::holds_alternative<Locked>(phase) && !std::holds_alternative<Verifying>(phase))
                return {};
            phase = PasswordsPaused{failures()};
            return {ShowPasswordsPaused{}};
    }
    return {};
}

double LockMachine::untilTick(double now) const {
    constexpr double never = std::numeric_limits<double>::infinity();
    if (!isLocked()) return never;
    // The card counts a cool-down down, and a hand-off waits for a confirmation.
    if (std::holds_alternative<CoolingDown>(phase) || isHandedOff()) return 0;
    if (!handOffAfter || timedHandOffDone) return never;
    return std::max(0.0, lockedAt + *handOffAfter - now);
}

std::vector<LockEffect> LockMachine::handOff(double now) {
    phase = HandedOff{failures(), now, false};
    return {EngageMacOSLock{}};
}

std::vector<LockEffect> LockMachine::reject(double now) {
    const int count = failures() + 1;
    // The account's limit overrides any cool-down, so check it first.
    if (!backoff.passwordsAllowed(count)) {
        phase = PasswordsPaused{count};
        return {ShowWrongPassword{}, ShowPasswordsPaused{}};
    }
    const double cooldown = backoff.cooldown(count);
    if (cooldown > 0) {
        phase = CoolingDown{count, now + cooldown};
        return {ShowWrongPassword{}, ShowCooldown{now + cooldown}};
    }
    phase = Locked{count};
    return {ShowWrongPassword{}};
}

std::vector<LockEffect> LockMachine::macOSUnlocked() {
    if (!macOSLockedDuringLock) return {};
    if (unlocksWithMacOS) {
        phase = Idle{};
        return {Uncover{}};
    }
    return takeBack();
}

std::vector<LockEffect> LockMachine::takeBack() {
    if (!isHandedOff() || !macOSLockedDuringLock) return {};
    phase = Locked{failures()};
    return {ShowReady{}};
}

}  // namespace OrvelCore
