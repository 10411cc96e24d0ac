#pragma once

#include <optional>
#include <string>

#include <security/pam_appl.h>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelAuth/PasswordVerifying.h"

namespace OrvelAuth {

/// What PAM and the files that it goes by said about one password.
struct PAMAnswers {
    std::string userName;
    int authentication = PAM_SYSTEM_ERR;
    /// Nothing when the account was not checked.
    std::optional<int> account;
    /// Its failures had locked the account before this password was tried.
    bool accountIsLocked = false;
    /// pam_nologin keeps the user out.
    bool loginsAreBarred = false;
    /// The last words of a module; empty for none.
    std::string message;
};

/// Rejected is only a password that PAM calls wrong of an account that could be used.
PasswordResult passwordResult(const PAMAnswers& answers);

/// Whether the account may be checked after a password was refused, to tell an account that is
/// barred from a wrong password. Only modules that are known to look and change nothing allow it:
/// pam_faillock forgets all failures at this check, and guesses would never lock the account.
bool mayCheckAccountAfterRefusal(const PAMStack& stack);

}  // namespace OrvelAuth
