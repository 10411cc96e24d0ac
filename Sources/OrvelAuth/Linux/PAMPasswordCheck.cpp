#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <pwd.h>
#include <security/pam_appl.h>

#include "OrvelAuth/Linux/PAMService.h"
#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"

namespace OrvelAuth {

namespace {

using OrvelSystem::Password;

struct Conversation {
    const Password& password;
    // The last thing that a module had to say; why it refused, if it said so.
    std::string message;
};

// PAM takes its answers as malloced text, and frees it.
char* copyForPAM(const Password& password) {
    const auto text = password.view();
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
            default:
                // A question whose answer may be read aloud is not one for the password.
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

// The lock has its own schedule for wrong passwords.
void noDelay(int /*status*/, unsigned /*microseconds*/, void* /*data*/) {}

// PAM stacks hide an unknown account behind a wrong password. True only when the account database
// says so, and not when it cannot be asked.
bool isUnknown(const std::string& userName) {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    const int error = getpwnam_r(userName.c_str(), &entry, buffer.data(), buffer.size(), &found);
    return error == 0 && !found;
}

class Transaction {
  public:
    Transaction(const std::string& userName, Conversation& conversation)
        : talk_{converse, &conversation} {
        status_ = pam_start(pamService().c_str(), userName.c_str(), &talk_, &handle_);
        if (status_ != PAM_SUCCESS) return;
        pam_set_item(handle_, PAM_FAIL_DELAY, reinterpret_cast<const void*>(&noDelay));
        // Access rules ask where the user sits; on a desktop that is the display.
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
    std::string description() const { return pam_strerror(handle_, status_); }

  private:
    pam_conv talk_;
    pam_handle_t* handle_ = nullptr;
    int status_ = PAM_SYSTEM_ERR;
};

}  // namespace

PasswordResult OpenDirectoryPasswordVerifier::verifyNow(const Password& password,
                                                        const std::string& userName) {
    // PAM would take what stands before it for the whole password.
    if (password.view().find('\0') != std::string_view::npos) return PasswordRejected{};

    const PasswordUnavailable noRecord{fmt::format("no account record for {}", userName)};
    if (isUnknown(userName)) return noRecord;

    Conversation conversation{password, {}};
    Transaction transaction(userName, conversation);
    const auto unavailable = [&]() -> PasswordResult {
        if (transaction.status() == PAM_USER_UNKNOWN) return noRecord;
        return PasswordUnavailable{conversation.message.empty() ? transaction.description()
                                                                : conversation.message};
    };

    if (transaction.status() != PAM_SUCCESS) return unavailable();
    switch (transaction.authenticate()) {
        case PAM_SUCCESS:
            break;
        case PAM_AUTH_ERR:
            return PasswordRejected{};
        default:
            return unavailable();
    }
    switch (transaction.checkAccount()) {
        case PAM_SUCCESS:
        // The password is right, only old. Changing it is for the next login; locking its owner
        // out here would help nobody.
        case PAM_NEW_AUTHTOK_REQD:
            return PasswordAccepted{};
        default:
            return unavailable();
    }
}

}  // namespace OrvelAuth
