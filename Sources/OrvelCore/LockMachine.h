#pragma once

#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "OrvelCore/Backoff.h"

namespace OrvelCore {

/// The cases of `LockPhase`.
namespace LockPhases {

/// No lock.
struct Idle {
    bool operator==(const Idle&) const = default;
};
/// The card is up and ready for a password.
struct Locked {
    int failures = 0;
    bool operator==(const Locked&) const = default;
};
/// A password is being checked.
struct Verifying {
    int failures = 0;
    bool operator==(const Verifying&) const = default;
};
/// Passwords are refused until `until`.
struct CoolingDown {
    int failures = 0;
    double until = 0;
    bool operator==(const CoolingDown&) const = default;
};
/// Passwords are refused with no end, to spare the account.
struct PasswordsPaused {
    int failures = 0;
    bool operator==(const PasswordsPaused&) const = default;
};
/// The macOS lock was asked to engage at `since`; `confirmed` once macOS said that it is locked.
struct HandedOff {
    int failures = 0;
    double since = 0;
    bool confirmed = false;
    bool operator==(const HandedOff&) const = default;
};

}  // namespace LockPhases

using LockPhase =
    std::variant<LockPhases::Idle, LockPhases::Locked, LockPhases::Verifying,
                 LockPhases::CoolingDown, LockPhases::PasswordsPaused, LockPhases::HandedOff>;

enum class LockEvent {
    lockRequested,
    passwordSubmitted,
    passwordAccepted,
    passwordRejected,
    passwordUnavailable,
    biometricAccepted,
    clockTick,
    handOff,
    macOSLocked,
    macOSUnlocked,
    /// The macOS lock ended without a proof that its owner unlocked it.
    macOSLockUnknown,
    accountNearLimit,
};

/// The cases of `LockEffect`.
namespace LockEffects {

struct ShowCooldown {
    double until = 0;
    bool operator==(const ShowCooldown&) const = default;
};
struct Cover {
    bool operator==(const Cover&) const = default;
};
struct Uncover {
    bool operator==(const Uncover&) const = default;
};
/// Check the password in hand.
struct VerifyPassword {
    bool operator==(const VerifyPassword&) const = default;
};
struct ShowWrongPassword {
    bool operator==(const ShowWrongPassword&) const = default;
};
struct ShowPasswordsPaused {
    bool operator==(const ShowPasswordsPaused&) const = default;
};
/// Show the card ready for input.
struct ShowReady {
    bool operator==(const ShowReady&) const = default;
};
/// Show that the password check is unavailable.
struct ShowUnavailable {
    bool operator==(const ShowUnavailable&) const = default;
};
struct EngageMacOSLock {
    bool operator==(const EngageMacOSLock&) const = default;
};

}  // namespace LockEffects

using LockEffect = std::variant<LockEffects::ShowCooldown, LockEffects::Cover, LockEffects::Uncover,
                                LockEffects::VerifyPassword, LockEffects::ShowWrongPassword,
                                LockEffects::ShowPasswordsPaused, LockEffects::ShowReady,
                                LockEffects::ShowUnavailable, LockEffects::EngageMacOSLock>;

/// The whole-Mac lock as a value: every rule about when it may be left, when passwords are no
/// longer taken and when control passes to the macOS lock. All times are seconds of one monotonic
/// clock. An event that does not apply changes nothing and gives no effects, so late answers are
/// harmless.
struct LockMachine {
    LockPhase phase = LockPhases::Idle{};
    Backoff backoff;
    /// macOS reported locked during this lock; without that its unlock counts for nothing.
    bool macOSLockedDuringLock = false;
    /// Seconds of lock after which it passes to macOS by itself; nothing for never. Settable at
    /// any time.
    std::optional<double> handOffAfter;
    /// Whether a macOS unlock also ends this lock. Settable at any time.
    bool unlocksWithMacOS = true;
    double lockedAt = 0;
    /// The timed hand-off happens once a lock.
    bool timedHandOffDone = false;

    LockMachine() = default;
    explicit LockMachine(Backoff schedule) : backoff(std::move(schedule)) {}

    /// The effects are to be performed in order.
    std::vector<LockEffect> handle(LockEvent event, double now);

    bool isLocked() const { return !std::holds_alternative<LockPhases::Idle>(phase); }
    bool isHandedOff() const { return std::holds_alternative<LockPhases::HandedOff>(phase); }
    /// Of the present lock; 0 without one.
    int failures() const;

    bool operator==(const LockMachine&) const = default;

  private:
    std::vector<LockEffect> handOff(double now);
    std::vector<LockEffect> reject(double now);
    std::vector<LockEffect> macOSUnlocked();
    /// Ends a hand-off that macOS had confirmed, and shows the card again.
    std::vector<LockEffect> takeBack();
};

}  // namespace OrvelCore
