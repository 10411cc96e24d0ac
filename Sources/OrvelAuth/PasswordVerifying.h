#pragma once

#include <string>
#include <variant>

#include "OrvelSystem/Password.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// The password is that of the account.
struct PasswordAccepted {
    bool operator==(const PasswordAccepted&) const = default;
};
/// The system reported that the password is wrong.
struct PasswordRejected {
    bool operator==(const PasswordRejected&) const = default;
};
/// The password could not be checked. `reason` is for logs, not for the user.
struct PasswordUnavailable {
    std::string reason;
    bool operator==(const PasswordUnavailable&) const = default;
};
using PasswordResult = std::variant<PasswordAccepted, PasswordRejected, PasswordUnavailable>;

/// Seconds; in the app and in the guard, a check that takes longer counts as unavailable.
inline constexpr double passwordTimeout = 5;

/// The check of the account's password, for the lock of the whole Mac and for locked apps.
class PasswordVerifying {
  public:
    virtual ~PasswordVerifying() = default;
    /// Returns within a bounded time, however the system behaves, since the lock waits for the
    /// result. The verifier must outlive the task.
    virtual OrvelSystem::Task<PasswordResult> verify(OrvelSystem::Password password) = 0;
};

}  // namespace OrvelAuth
