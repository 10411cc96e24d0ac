#pragma once

#include <compare>
#include <utility>
#include <variant>
#include <vector>

#include "OrvelCore/Backoff.h"

namespace OrvelCore {

/// The alternatives of `AppUnlockMachine::Phase`.
namespace AppUnlockPhases {

struct Ready {
    auto operator<=>(const Ready&) const = default;
};
/// A password is being checked.
struct Verifying {
    auto operator<=>(const Verifying&) const = default;
};
/// Passwords are refused until `until`, in seconds of uptime.
struct Cooldown {
    double until = 0;
    auto operator<=>(const Cooldown&) const = default;
};
/// Passwords are refused indefinitely, so that the account does not lock itself.
struct PasswordsPaused {
    auto operator<=>(const PasswordsPaused&) const = default;
};

}  // namespace AppUnlockPhases

/// The alternatives of `AppUnlockMachine::Effect`.
namespace AppUnlockEffects {

/// Check the submitted password.
struct VerifyPassword {
    bool operator==(const VerifyPassword&) const = default;
};
struct Unlock {
    bool operator==(const Unlock&) const = default;
};
struct ShowVerifying {
    bool operator==(const ShowVerifying&) const = default;
};
struct ShowWrongPassword {
    bool operator==(const ShowWrongPassword&) const = default;
};
struct ShowPasswordsPaused {
    bool operator==(const ShowPasswordsPaused&) const = default;
};
/// Show that the badge is ready for input.
struct ShowReady {
    bool operator==(const ShowReady&) const = default;
};
/// Show that the password check is unavailable.
struct ShowUnavailable {
    bool operator==(const ShowUnavailable&) const = default;
};
/// `until` is in seconds of uptime.
struct ShowCooldown {
    double until = 0;
    bool operator==(const ShowCooldown&) const = default;
};

}  // namespace AppUnlockEffects

/// The attempts to unlock one locked app. It is created when the app is locked and discarded when
/// the lock ends, so that failures on one app never count against another. All times are seconds of
/// uptime. An event that does not apply in the current phase changes nothing and returns no
/// effects, so late answers are harmless.
struct AppUnlockMachine {
    using Phase = std::variant<AppUnlockPhases::Ready, AppUnlockPhases::Verifying,
                               AppUnlockPhases::Cooldown, AppUnlockPhases::PasswordsPaused>;
    enum class Event {
        passwordSubmitted,
        passwordAccepted,
        passwordRejected,
        passwordUnavailable,
        biometricAccepted,
        clockTick,
        accountNearLimit,
    };
    using Effect =
        std::variant<AppUnlockEffects::VerifyPassword, AppUnlockEffects::Unlock,
                     AppUnlockEffects::ShowVerifying, AppUnlockEffects::ShowWrongPassword,
                     AppUnlockEffects::ShowPasswordsPaused, AppUnlockEffects::ShowReady,
                     AppUnlockEffects::ShowUnavailable, AppUnlockEffects::ShowCooldown>;

    Backoff backoff;
    Phase phase = AppUnlockPhases::Ready{};
    /// The number of rejected passwords. It is never reset.
    int failures = 0;

    AppUnlockMachine() = default;
    explicit AppUnlockMachine(Backoff schedule) : backoff(std::move(schedule)) {}

    /// Returns the effects to perform, in this order.
    std::vector<Effect> handle(Event event, double now);

    auto operator<=>(const AppUnlockMachine&) const = default;

  private:
    std::vector<Effect> reject(double now);
};

}  // namespace OrvelCore
