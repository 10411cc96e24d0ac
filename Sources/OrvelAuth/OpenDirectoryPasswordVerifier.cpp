#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"

#include <cmath>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "OrvelSystem/Timeout.h"
#include "OrvelSystem/Worker.h"

namespace OrvelAuth {

OpenDirectoryPasswordVerifier::OpenDirectoryPasswordVerifier(std::string userName, double timeout,
                                                             OrvelSystem::MainLoop& loop,
                                                             Check check)
    : userName_(std::move(userName)), timeout_(timeout), loop_(loop), check_(std::move(check)) {}

OrvelSystem::Task<PasswordResult> OpenDirectoryPasswordVerifier::verify(
    OrvelSystem::Password password) {
    // The worker owns everything that it uses, since it may outlive this verifier.
    auto work = [check = check_, password = std::move(password), userName = userName_] {
        return check(password, userName);
    };
    auto checking = OrvelSystem::runBlocking(loop_, std::move(work));
    std::optional<PasswordResult> result =
        co_await OrvelSystem::Timeout::run(loop_, timeout_, std::move(checking));
    if (result) {
        onAnswer(*result);
        co_return std::move(*result);
    }
    co_return PasswordUnavailable{fmt::format("timed out after {:.0f} s", std::trunc(timeout_))};
}

}  // namespace OrvelAuth
