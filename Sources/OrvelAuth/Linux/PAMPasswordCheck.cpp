#include "OrvelAuth/Linux/PAMPasswordCheck.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <pwd.h>

#include "OrvelAuth/AccountLockoutPolicy.h"
#include "OrvelAuth/Linux/ExtraQuestions.h"
#include "OrvelAuth/Linux/FingerprintHold.h"
#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"

namespace OrvelAuth {

namespace {

using OrvelSystem::Password;

struct Conversation {
    // Both are in the memory of a `Password`.
    std::string_view password;
    std::optional<std::string_view> answer;
    bool metQuestion = false;
    // The last message of a module, which may explain why it refused.
    std::string message;
};

// PAM expects answers that were allocated with `malloc`, and frees them.
char* copyForPAM(std::string_view text) {
    auto* const copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy) return nullptr;
    if (!text.empty()) std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

void discard(pam_response* replies, int count) {
    for (int i = 0; i < count; ++i) {
        char* const text = replies[i].resp;
        if (!text) continue;
        explicit_bzero(text, std::strlen(text));
        std::free(text);
    }
    std::free(replies);
}

int converse(int count, const pam_message** messages, pam_response** responses, void* data) {
    auto& conversation = *static_cast<Conversation*>(data);
    if (count <= 0 || count > PAM_MAX_NUM_MSG) return PAM_CONV_ERR;
    auto* const replies = static_cast<pam_response*>(
        std::calloc(static_cast<std::size_t>(count), sizeof(pam_response)));
    if (!replies) return PAM_BUF_ERR;
    for (int i = 0; i < count; ++i) {
        bool answered = true;
        switch (messages[i]->msg_style) {
            case PAM_PROMPT_ECHO_OFF:
                replies[i].resp = copyForPAM(conversation.password);
                answered = replies[i].resp != nullptr;
                break;
            case PAM_ERROR_MSG:
            case PAM_TEXT_INFO:
                if (messages[i]->msg) conversation.message = messages[i]->msg;
                break;
            case PAM_PROMPT_ECHO_ON:
                // A prompt that echoes its answer does not ask for a password.
                if (messages[i]->msg) conversation.message = messages[i]->msg;
                conversation.metQuestion = true;
                if (conversation.answer)
                    replies[i].resp = copyForPAM(*conversation.answer);
                else
                    ExtraQuestions::noteAsked(conversation.message);
                answered = replies[i].resp != nullptr;
                break;
            default:
                answered = false;
        }
        if (!answered) {
            discard(replies, count);
            return PAM_CONV_ERR;
        }
    }
    *responses = replies;
    return PAM_SUCCESS;
}

// The lock has its own delays after wrong passwords.
void noDelay(int /*status*/, unsigned /*microseconds*/, void* /*data*/) {}

// PAM stacks report an unknown account as a wrong password. `nullopt` only if the account database
// states that there is no such account; if it cannot be read, returns an ID that no account has.
std::optional<uid_t> identity(const std::string& userName) {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    const int error = getpwnam_r(userName.c_str(), &entry, buffer.data(), buffer.size(), &found);
    if (error == 0 && !found) return {};
    return found ? found->pw_uid : static_cast<uid_t>(-1);
}

class Transaction {
  public:
    Transaction(const std::string& userName, Conversation& conversation)
        : talk_{converse, &conversation} {
        status_ = pam_start(pamService().c_str(), userName.c_str(), &talk_, &handle_);
        if (status_ != PAM_SUCCESS) return;
        pam_set_item(handle_, PAM_FAIL_DELAY, reinterpret_cast<const void*>(&noDelay));
        // Access rules depend on the terminal; in a graphical session this is the display.
        if (const char* const display = std::getenv("DISPLAY")) {
            pam_set_item(handle_, PAM_TTY, display);
        }
    }
    ~Transaction() {
        if (handle_) pam_end(handle_, status_);
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    int status() const { return status_; }
    int authenticate() { return status_ = pam_authenticate(handle_, 0); }
    int checkAccount() { return status_ = pam_acct_mgmt(handle_, 0); }

  private:
    pam_conv talk_;
    pam_handle_t* handle_ = nullptr;
    int status_ = PAM_SYSTEM_ERR;
};

// Whether pam_nologin refuses this user, as it does while the system shuts down.
bool loginsAreBarred(const PAMStack& stack, uid_t user) {
    constexpr std::string_view named = "file=";
    if (user == 0) return false;
    return std::ranges::any_of(stack.authentication, [&](const PAMUse& use) {
        if (use.module != "pam_nologin.so") return false;
        std::vector<std::string> files{"/var/run/nologin", "/etc/nologin"};
        for (const auto& argument : use.arguments) {
            if (argument.starts_with(named)) files = {argument.substr(named.size())};
        }
        return std::ranges::any_of(files, [](const std::string& file) {
            std::error_code error;
            return std::filesystem::exists(file, error);
        });
    });
}

}  // namespace

PasswordResult passwordResult(const PAMAnswers& answers) {
    const auto unavailable = [&](int code) -> PasswordResult {
        if (code == PAM_USER_UNKNOWN)
            return PasswordUnavailable{fmt::format("no account record for {}", answers.userName)};
        return PasswordUnavailable{answers.message.empty() ? pam_strerror(nullptr, code)
                                                           : answers.message};
    };
    const int account = answers.account.value_or(PAM_SYSTEM_ERR);
    switch (answers.authentication) {
        case PAM_SUCCESS:
            switch (account) {
                case PAM_SUCCESS:
                // The password is right but expired. The owner can change it at the next login;
                // refusing it here would only lock the owner out.
                case PAM_NEW_AUTHTOK_REQD:
                    return PasswordAccepted{};
                default:
                    return unavailable(account);
            }
        case PAM_AUTH_ERR:
            break;
        default:
            return unavailable(answers.authentication);
    }
    // Modules that refuse an account report a wrong password.
    if (answers.accountIsLocked) return PasswordUnavailable{"the account is locked"};
    if (answers.loginsAreBarred) return PasswordUnavailable{"logins are barred"};
    switch (account) {
        case PAM_ACCT_EXPIRED:
        case PAM_PERM_DENIED:
        case PAM_AUTH_ERR:
            return unavailable(account);
        default:
            return PasswordRejected{};
    }
}

bool mayCheckAccountAfterRefusal(const PAMStack& stack) {
    constexpr std::array<std::string_view, 10> harmless{
        "pam_access.so", "pam_deny.so",    "pam_localuser.so",  "pam_nologin.so",
        "pam_permit.so", "pam_sss.so",     "pam_succeed_if.so", "pam_time.so",
        "pam_unix.so",   "pam_usertype.so"};
    return std::ranges::all_of(stack.account, [&](const PAMUse& use) {
        return std::ranges::find(harmless, use.module) != harmless.end();
    });
}

PasswordResult OpenDirectoryPasswordVerifier::verifyNow(const Password& password,
                                                        const std::string& userName) {
    // PAM would treat the part before the null character as the whole password.
    if (password.view().find('\0') != std::string_view::npos) return PasswordRejected{};

    PAMAnswers answers{.userName = userName};
    const auto user = identity(userName);
    if (!user) {
        answers.authentication = PAM_USER_UNKNOWN;
        return passwordResult(answers);
    }
    const auto stack = PAMStack::read();
    // Read this before the attempt: the attempt itself may lock the account, but is still checked.
    answers.accountIsLocked = AccountLockoutPolicy::isLocked(userName);
    answers.loginsAreBarred = loginsAreBarred(stack, *user);

    const FingerprintHold hold(stack);
    const auto ask = [&](Conversation conversation) {
        Transaction transaction(userName, conversation);
        answers.authentication = transaction.status();
        if (answers.authentication == PAM_SUCCESS) {
            answers.authentication = transaction.authenticate();
            if (answers.authentication == PAM_SUCCESS ||
                (answers.authentication == PAM_AUTH_ERR && mayCheckAccountAfterRefusal(stack)))
                answers.account = transaction.checkAccount();
        }
        answers.message = std::move(conversation.message);
        return conversation.metQuestion || answers.authentication == PAM_SUCCESS;
    };
    const auto typed = password.view();
    const auto space = typed.rfind(' ');
    if (space != std::string_view::npos && ExtraQuestions::wereAsked() &&
        ask({.password = typed.substr(0, space), .answer = typed.substr(space + 1)}))
        return passwordResult(answers);
    // Without a question, the space is a part of the password.
    ask({.password = typed});
    return passwordResult(answers);
}

}  // namespace OrvelAuth
