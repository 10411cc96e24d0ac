// A PAM module whose answers are read from a file. Its one argument is the file's path, and each
// line of the file is a key and a value:
//   password TEXT     the right password (default: all are rejected)
//   authenticate N    the result for every password, as a PAM code
//   account N         the result of the account check, as a PAM code (default: 0)
//   delay SECONDS     a delay before the result for a password
//   question TEXT     an additional question, whose answer is echoed
//   answer TEXT       the right answer to it (default: every answer is right)
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include <security/pam_ext.h>
#include <security/pam_modules.h>
#include <unistd.h>

namespace {

using Script = std::map<std::string, std::string>;

Script read(int argc, const char** argv) {
    Script script;
    if (argc < 1) return script;
    std::ifstream file(argv[0]);
    for (std::string key, value; file >> key && std::getline(file >> std::ws, value);)
        script[key] = value;
    return script;
}

int number(const Script& script, const char* key, int otherwise) {
    const auto entry = script.find(key);
    return entry == script.end() ? otherwise : std::atoi(entry->second.c_str());
}

}  // namespace

extern "C" {

int pam_sm_authenticate(pam_handle_t* handle, int, int argc, const char** argv) {
    // The delay that pam_unix requests. A program that waits for it delays its user's next attempt.
    constexpr unsigned failDelayMicroseconds = 2'000'000;
    pam_fail_delay(handle, failDelayMicroseconds);
    const char* typed = nullptr;
    if (pam_get_authtok(handle, PAM_AUTHTOK, &typed, nullptr) != PAM_SUCCESS || !typed)
        return PAM_AUTHINFO_UNAVAIL;
    const Script script = read(argc, argv);
    if (const int seconds = number(script, "delay", 0)) sleep(static_cast<unsigned>(seconds));
    bool right = true;
    if (const auto question = script.find("question"); question != script.end()) {
        char* answer = nullptr;
        const int result =
            pam_prompt(handle, PAM_PROMPT_ECHO_ON, &answer, "%s", question->second.c_str());
        const auto expected = script.find("answer");
        right = expected == script.end() || (answer && expected->second == answer);
        std::free(answer);
        if (result != PAM_SUCCESS) return result;
    }
    const auto password = script.find("password");
    right &= password != script.end() && password->second == typed;
    return number(script, "authenticate", right ? PAM_SUCCESS : PAM_AUTH_ERR);
}

int pam_sm_setcred(pam_handle_t*, int, int, const char**) {
    return PAM_SUCCESS;
}

int pam_sm_acct_mgmt(pam_handle_t*, int, int argc, const char** argv) {
    return number(read(argc, argv), "account", PAM_SUCCESS);
}
}
