#pragma once

#include <optional>
#include <string>

#include <security/pam_appl.h>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelAuth/PasswordVerifying.h"

namespace OrvelAuth {

/// The results of PAM and of the files that PAM uses, for one password.
struct PAMAnswers {
    std::string userName;
    /// The result of `pam_authenticate`.
    int authentication = PAM_SYSTEM_ERR;
    /// `nullopt` if the account was not checked.
    std::optional<int> account;
    /// Whether failures had locked the account before this password was tried.
    bool accountIsLocked = false;
    /// Whether pam_nologin refuses the user.
    bool loginsAreBarred = false;
    /// The last message of a module; empty if there was none.
    std::string message;
};

/// Returns `PasswordRejected` only if PAM reports a wrong password for an account that is otherwise
/// usable.
PasswordResult passwordResult(const PAMAnswers& answers);

/// Whether the account may be checked after a refused password, to distinguish a barred account
/// from a wrong password. True only if all modules are known to change nothing: pam_faillock resets
/// its failures at this check, so guesses would never lock the account.
bool mayCheckAccountAfterRefusal(const PAMStack& stack);

}  // namespace OrvelAuth
