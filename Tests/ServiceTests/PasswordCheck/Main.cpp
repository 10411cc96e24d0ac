// Checks a password in a program without a toolkit or a main loop: PasswordCheck USER, with the
// password on standard input. It prints the result, and the names of any loaded toolkit or property
// list libraries.
#include <fstream>
#include <iostream>
#include <iterator>

#include "OrvelAuth/Linux/ExtraQuestions.h"
#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    using namespace OrvelAuth;
    const std::string typed(std::istreambuf_iterator<char>(std::cin), {});
    const auto result =
        OpenDirectoryPasswordVerifier::verifyNow(OrvelSystem::Password(typed), argv[1]);
    if (std::holds_alternative<PasswordAccepted>(result)) std::cout << "accepted\n";
    if (std::holds_alternative<PasswordRejected>(result)) std::cout << "rejected\n";
    if (const auto* const unavailable = std::get_if<PasswordUnavailable>(&result))
        std::cout << "unavailable: " << unavailable->reason << '\n';
    if (ExtraQuestions::takeAsked()) std::cout << "asked for more\n";

    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find("libQt") != std::string::npos || line.find("libplist") != std::string::npos)
            std::cout << line << '\n';
    return 0;
}
