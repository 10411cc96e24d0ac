// Asks PAM about one password, as a program under test does: PamCheck SERVICE USER PASSWORD.
// Exits with the PAM code of the authentication, or of the account check after it.
#include <cstdlib>
#include <cstring>

#include <security/pam_appl.h>

namespace {

int converse(int count, const pam_message** messages, pam_response** responses, void* password) {
    *responses = static_cast<pam_response*>(std::calloc(count, sizeof(pam_response)));
    for (int i = 0; i < count; ++i)
        if (messages[i]->msg_style == PAM_PROMPT_ECHO_OFF)
            (*responses)[i].resp = strdup(static_cast<char*>(password));
    return PAM_SUCCESS;
}

void noDelay(int, unsigned, void*) {}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return PAM_SYSTEM_ERR;
    const pam_conv conversation{converse, argv[3]};
    pam_handle_t* handle = nullptr;
    int result = pam_start(argv[1], argv[2], &conversation, &handle);
    if (result == PAM_SUCCESS)
        result = pam_set_item(handle, PAM_FAIL_DELAY, reinterpret_cast<const void*>(noDelay));
    if (result == PAM_SUCCESS) result = pam_authenticate(handle, 0);
    if (result == PAM_SUCCESS) result = pam_acct_mgmt(handle, 0);
    pam_end(handle, result);
    return result;
}
