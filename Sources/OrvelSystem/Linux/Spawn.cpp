#include "OrvelSystem/Linux/Spawn.h"

#include <cerrno>
#include <csignal>
#include <string_view>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace OrvelSystem {

namespace {

std::error_code systemError(int number) {
    return {number, std::generic_category()};
}

std::vector<char*> pointers(const Arguments& strings) {
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    // The exec functions take non-const pointers for historical reasons, but do not write to them.
    for (const auto& string : strings) result.push_back(const_cast<char*>(string.c_str()));
    result.push_back(nullptr);
    return result;
}

/// Of this process, for another program.
std::vector<char*> environmentForOthers() {
    std::vector<char*> result;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        if (text.substr(0, text.find('=')) != rolelessVariable) result.push_back(*entry);
    }
    result.push_back(nullptr);
    return result;
}

int wait(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Sent through the pipe before the exec: the process ID, and after a failed exec also the error.
struct Report {
    pid_t pid;
    int error;
};

// Runs between fork and exec in a multithreaded program, so it may use only async-signal-safe
// functions.
[[noreturn]] void become(char* const* arguments, char* const* environment, int reports) {
    setsid();
    if (const pid_t again = fork(); again != 0) _exit(again < 0 ? 1 : 0);
    for (int number = 1; number < NSIG; ++number) std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    if (const int null = open("/dev/null", O_RDONLY | O_CLOEXEC); null >= 0) {
        dup2(null, STDIN_FILENO);
    }
    Report report{getpid(), 0};
    (void)!write(reports, &report, sizeof(report));
    execvpe(arguments[0], arguments, environment);
    report.error = errno;
    (void)!write(reports, &report, sizeof(report));
    _exit(127);
}

}  // namespace

std::expected<pid_t, std::error_code> spawnDetached(const Arguments& arguments) {
    const auto argv = pointers(arguments);
    const auto environment = environmentForOthers();
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return std::unexpected(systemError(errno));
    const pid_t child = fork();
    if (child == 0) become(argv.data(), environment.data(), ends[1]);
    const int forkError = errno;
    close(ends[1]);
    if (child > 0) wait(child);
    // Reading ends when the exec closes the pipe, or when the process exits.
    Report report{0, 0};
    Report next{0, 0};
    while (child > 0) {
        const ssize_t size = read(ends[0], &next, sizeof(next));
        if (size < 0 && errno == EINTR) continue;
        if (size != sizeof(next)) break;
        report = next;
    }
    close(ends[0]);
    if (child < 0) return std::unexpected(systemError(forkError));
    if (report.pid == 0) return std::unexpected(systemError(EAGAIN));
    if (report.error != 0) return std::unexpected(systemError(report.error));
    return report.pid;
}

std::expected<int, std::error_code> runToEnd(const Arguments& arguments) {
    const auto argv = pointers(arguments);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    }
    pid_t pid = 0;
    const auto environment = environmentForOthers();
    const int error =
        posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environment.data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) return std::unexpected(systemError(error));
    return wait(pid);
}

}  // namespace OrvelSystem
