#include "OrvelAuth/Linux/ExtraQuestions.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <string_view>
#include <utility>

namespace OrvelAuth::ExtraQuestions {

namespace {

// The setting contains the description of the stack that asked for more.
constexpr std::string_view key = "passwordStackThatAskedMore";

struct Asked {
    std::mutex mutex;
    std::optional<std::string> question;
    bool ever = false;
};

Asked& asked() {
    // Never destroyed: a check may still run when the program exits.
    static auto& state = *new Asked;
    return state;
}

bool has(const PAMUse& use, std::string_view argument) {
    return std::ranges::find(use.arguments, argument) != use.arguments.end();
}

bool asks(const PAMUse& use, const std::filesystem::path& home) {
    constexpr std::array<std::string_view, 7> modules{"pam_google_authenticator.so",
                                                      "pam_oath.so",
                                                      "pam_otpw.so",
                                                      "pam_opie.so",
                                                      "pam_duo.so",
                                                      "pam_securid.so",
                                                      "pam_yubico.so"};
    if (std::ranges::find(modules, use.module) == modules.end()) return false;
    // With these arguments, the user types the code as a part of the password.
    if (has(use, "forward_pass") || has(use, "use_first_pass")) return false;
    if (has(use, "mode=challenge-response")) return false;
    if (use.module == "pam_google_authenticator.so" && has(use, "nullok")) {
        const bool isElsewhere = std::ranges::any_of(
            use.arguments, [](const auto& argument) { return argument.starts_with("secret="); });
        std::error_code error;
        return isElsewhere || std::filesystem::exists(home / ".google_authenticator", error);
    }
    return true;
}

std::string description(const PAMStack& stack) {
    std::string text;
    for (const auto& use : stack.authentication) {
        text += use.control + ' ' + use.module;
        for (const auto& argument : use.arguments) text += ' ' + argument;
        text += '\n';
    }
    return text;
}

}  // namespace

bool areExpected(const PAMStack& stack, const std::filesystem::path& home) {
    for (const auto& use : stack.authentication) {
        if (asks(use, home)) return true;
        // A correct password ends the stack here.
        if (use.control == "sufficient" && use.module == "pam_unix.so") return false;
    }
    return false;
}

void noteAsked(std::string question) {
    const std::lock_guard lock(asked().mutex);
    asked().question = std::move(question);
    asked().ever = true;
}

std::optional<std::string> takeAsked() {
    const std::lock_guard lock(asked().mutex);
    return std::exchange(asked().question, {});
}

bool wereAsked() {
    const std::lock_guard lock(asked().mutex);
    return asked().ever;
}

void Memory::remember(const PAMStack& stack) {
    store_.setString(key, description(stack));
}

bool Memory::remembers(const PAMStack& stack) const {
    return store_.stringForKey(key) == description(stack);
}

}  // namespace OrvelAuth::ExtraQuestions
