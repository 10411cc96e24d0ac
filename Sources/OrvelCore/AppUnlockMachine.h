#pragma once

#include <compare>
#include <utility>
#include <variant>
#include <vector>

#include "OrvelCore/Backoff.h"

namespace OrvelCore {

/// The cases of `AppUnlockMachine::Phase`.
namespace AppUnlockPhases {

struct Ready {
    auto operator<=>(const Ready&) const = default;
};
/// A password is being checked.
struct Verifying {
    auto operator<=>(const Verifying&) const = default;
};
/// Passwords are refused until `until`, seconds of uptime.
struct Cooldown {
    double until = 0;
    auto operator<=>(const Cooldown&) const = default;
};
/// Passwords are refused with no end, to spare the account.
struct PasswordsPaused {
    auto operator<=>(const PasswordsPaused&) const = default;
};

}  // namespace AppUnlockPhases

/// The cases of `AppUnlockMachine::Effect`.
namespace AppUnlockEffects {

/// Check the password in hand.
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
/// Show the badge ready for input.
struct ShowReady {
    bool operator==(const ShowReady&) const = default;
};
/// Show that the password check is unavailable.
struct ShowUnavailable {
    bool operator==(const ShowUnavailable&) const = default;
};
struct ShowCooldown {
    double until = 0;
    bool operator==(const ShowCooldown&) const = default;
};

}  // namespace AppUnlockEffects

/// The attempts to unlock one locked app. It is made when the app is locked and thrown away when
/// the lock ends, so that failures on one app never count against another. All times are seconds
/// of uptime. An event that does not apply changes nothing and gives no effects, so late answers
/// are harmless.
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
    /// Rejected passwords; nothing resets it.
    int failures = 0;

    AppUnlockMachine() = default;
    explicit AppUnlockMachine(Backoff schedule) : backoff(std::move(schedule)) {}

    /// The effects are to be performed in order.
    std::vector<Effect> handle(Event event, double now);

    auto operator<=>(const AppUnlockMachine&) const = default;

  private:
    std::vector<Effect> reject(double now);
};

}  // namespace OrvelCore
