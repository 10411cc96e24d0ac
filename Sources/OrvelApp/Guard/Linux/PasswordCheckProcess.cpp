#include "OrvelApp/Guard/Linux/PasswordCheckProcess.h"

#include <cerrno>
#include <csignal>
#include <utility>
#include <variant>

#include <fcntl.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"
#include "OrvelSystem/Uptime.h"

namespace OrvelApp {

using OrvelSystem::uptime;

namespace {

/// Returns the byte that is sent to the parent.
char check(const OrvelSystem::Password& password) {
    const passwd* const account = getpwuid(getuid());
    if (account == nullptr) return 'u';
    const auto result =
        OrvelAuth::OpenDirectoryPasswordVerifier::verifyNow(password, account->pw_name);
    if (std::holds_alternative<OrvelAuth::PasswordAccepted>(result)) return 'a';
    return std::holds_alternative<OrvelAuth::PasswordRejected>(result) ? 'r' : 'u';
}

}  // namespace

void PasswordCheckProcess::begin(const OrvelSystem::Password& password, double timeout) {
    end();
    deadline_ = uptime() + timeout;
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::signal(SIGCHLD, SIG_DFL);
        const char verdict = check(password);
        (void)!write(ends[1], &verdict, 1);
        _exit(0);
    }
    close(ends[1]);
    if (child < 0) {
        close(ends[0]);
        return;
    }
    pid_ = child;
    descriptor_ = ends[0];
}

std::optional<Guard::Verdict> PasswordCheckProcess::verdict() {
    char answer = 0;
    const auto size = isRunning() ? read(descriptor_, &answer, 1) : 0;
    const bool isPending = size < 0 && (errno == EAGAIN || errno == EINTR);
    if (isPending && uptime() < deadline_) return {};
    end();
    // A child that ended without writing gave no result.
    if (size != 1) return Guard::Verdict::unavailable;
    if (answer == 'a') return Guard::Verdict::accepted;
    return answer == 'r' ? Guard::Verdict::rejected : Guard::Verdict::unavailable;
}

void PasswordCheckProcess::end() {
    if (const int child = std::exchange(pid_, 0); child > 0) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    if (const int file = std::exchange(descriptor_, -1); file >= 0) close(file);
}

}  // namespace OrvelApp
