#pragma once

#include <string>
#include <variant>

#include "OrvelSystem/Password.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// The password is the account's.
struct PasswordAccepted {
    bool operator==(const PasswordAccepted&) const = default;
};
/// The account's own check said that the password is wrong.
struct PasswordRejected {
    bool operator==(const PasswordRejected&) const = default;
};
/// No verdict could be reached. `reason` says why, for logs and not for the user.
struct PasswordUnavailable {
    std::string reason;
    bool operator==(const PasswordUnavailable&) const = default;
};
using PasswordResult = std::variant<PasswordAccepted, PasswordRejected, PasswordUnavailable>;

/// The check of the account's password, for the whole-Mac lock and for locked apps alike.
class PasswordVerifying {
  public:
    virtual ~PasswordVerifying() = default;
    /// Answers within a bounded time, however the system behaves: a lock stands still meanwhile.
    /// The verifier must outlive the task.
    virtual OrvelSystem::Task<PasswordResult> verify(OrvelSystem::Password password) = 0;
};

}  // namespace OrvelAuth
