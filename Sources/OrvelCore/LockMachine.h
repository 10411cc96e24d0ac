#pragma once

#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "OrvelCore/Backoff.h"

namespace OrvelCore {

/// The alternatives of `LockPhase`.
namespace LockPhases {

/// There is no lock.
struct Idle {
    bool operator==(const Idle&) const = default;
};
/// The card is shown and ready for a password.
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
/// Passwords are refused indefinitely, so that the account does not lock itself.
struct PasswordsPaused {
    int failures = 0;
    bool operator==(const PasswordsPaused&) const = default;
};
/// The macOS lock was requested at `since`. `confirmed` is true once macOS has reported that it is
/// locked.
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

/// The alternatives of `LockEffect`.
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
/// Check the submitted password.
struct VerifyPassword {
    bool operator==(const VerifyPassword&) const = default;
};
struct ShowWrongPassword {
    bool operator==(const ShowWrongPassword&) const = default;
};
struct ShowPasswordsPaused {
    bool operator==(const ShowPasswordsPaused&) const = default;
};
/// Show that the card is ready for input.
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

/// The lock of the whole Mac as a value: all rules about when it ends, when passwords are refused
/// and when it is handed off to the macOS lock. All times are seconds of one monotonic clock. An
/// event that does not apply in the current phase changes nothing and returns no effects, so late
/// answers are harmless.
struct LockMachine {
    LockPhase phase = LockPhases::Idle{};
    Backoff backoff;
    /// Whether macOS reported a lock during this lock. Otherwise its unlock is ignored.
    bool macOSLockedDuringLock = false;
    /// Seconds after which a lock is handed off to macOS automatically; `nullopt` for never. It can
    /// be changed at any time.
    std::optional<double> handOffAfter;
    /// Whether an unlock of macOS also ends this lock. It can be changed at any time.
    bool unlocksWithMacOS = true;
    /// When the current or last lock began.
    double lockedAt = 0;
    /// Limits the timed hand-off to once per lock.
    bool timedHandOffDone = false;

    LockMachine() = default;
    explicit LockMachine(Backoff schedule) : backoff(std::move(schedule)) {}

    /// Returns the effects to perform, in this order.
    std::vector<LockEffect> handle(LockEvent event, double now);

    /// Seconds until a `clockTick` has an effect, or changes what the card shows apart from the
    /// time of day; 0 if it may have one at any time, and infinity if only other events have
    /// effects.
    double untilTick(double now) const;

    bool isLocked() const { return !std::holds_alternative<LockPhases::Idle>(phase); }
    bool isHandedOff() const { return std::holds_alternative<LockPhases::HandedOff>(phase); }
    /// The failures during the current lock; 0 if there is none.
    int failures() const;

    bool operator==(const LockMachine&) const = default;

  private:
    std::vector<LockEffect> handOff(double now);
    std::vector<LockEffect> reject(double now);
    std::vector<LockEffect> macOSUnlocked();
    /// Ends a hand-off that macOS has confirmed, and shows the card again.
    std::vector<LockEffect> takeBack();
};

}  // namespace OrvelCore
