#include "Process.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include "Eventually.h"

namespace DesktopTest {

namespace {

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    for (auto& string : strings) result.push_back(string.data());
    result.push_back(nullptr);
    return result;
}

/// Calls waitpid with `flags`. Returns the result in the form of `Process::exitStatus`; empty while
/// `pid` runs.
std::optional<int> reap(pid_t pid, int flags) {
    int status = 0;
    pid_t result = 0;
    do result = waitpid(pid, &status, flags);
    while (result < 0 && errno == EINTR);
    if (result != pid) return std::nullopt;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::vector<pid_t> children(pid_t parent) {
    std::vector<pid_t> result;
    std::error_code error;
    const std::filesystem::path tasks = "/proc/" + std::to_string(parent) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks, error)) {
        std::istringstream list(textOf(task.path() / "children"));
        result.insert(result.end(), std::istream_iterator<pid_t>(list), {});
    }
    return result;
}

void addDescendants(pid_t parent, std::vector<pid_t>& result) {
    for (const pid_t child : children(parent)) {
        result.push_back(child);
        addDescendants(child, result);
    }
}

}  // namespace

Process::Process(const Arguments& arguments, const Environment& environment,
                 std::filesystem::path log, int inherited)
    : log_(std::move(log)) {
    // Allocate all memory before the fork, because the child may only make system calls.
    Arguments argumentText = arguments;
    Arguments environmentText;
    for (const auto& [name, value] : environment) environmentText.push_back(name + "=" + value);
    const auto argv = pointers(argumentText);
    const auto envp = pointers(environmentText);
    const auto path = environment.find("PATH");
    std::vector<std::string> candidates;
    if (arguments.front().find('/') != std::string::npos || path == environment.end()) {
        candidates.push_back(arguments.front());
    } else {
        std::istringstream folders(path->second);
        for (std::string folder; std::getline(folders, folder, ':');)
            candidates.push_back(folder + "/" + arguments.front());
    }
    const std::string output = log_.empty() ? "/dev/null" : log_.string();
    const pid_t parent = getpid();

    pid_ = fork();
    if (pid_ != 0) {
        setpgid(pid_, pid_);
        return;
    }
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);
    const int in = open("/dev/null", O_RDONLY);
    const int out = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(in, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(out, STDERR_FILENO);
    constexpr unsigned first = STDERR_FILENO + 1;
    if (inherited >= 0) {
        if (inherited > static_cast<int>(first)) close_range(first, inherited - 1, 0);
        close_range(inherited + 1, ~0U, 0);
    } else {
        close_range(first, ~0U, 0);
    }
    for (const auto& candidate : candidates) execve(candidate.c_str(), argv.data(), envp.data());
    _exit(127);
}

Process::~Process() {
    kill();
}

std::optional<int> Process::exitStatus() {
    if (!status_ && pid_ > 0) status_ = reap(pid_, WNOHANG);
    return status_;
}

std::optional<int> Process::waitForExit() {
    eventually([this] { return exitStatus().has_value(); });
    return status_;
}

void Process::signal(int number) const {
    if (!status_ && pid_ > 0) ::kill(pid_, number);
}

void Process::kill() {
    if (pid_ <= 0 || exitStatus()) return;
    ::kill(-pid_, SIGKILL);
    status_ = reap(pid_, 0);
}

std::string Process::output() const {
    return log_.empty() ? "" : textOf(log_);
}

Finished run(const Arguments& arguments, const Environment& environment) {
    std::string name = std::filesystem::temp_directory_path() / "karvo-run-XXXXXX";
    const int log = mkstemp(name.data());
    if (log >= 0) close(log);
    Process process(arguments, environment, name);
    const auto status = process.waitForExit();
    Finished result{status.value_or(-1), process.output()};
    std::filesystem::remove(name);
    return result;
}

void adoptOrphans() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

void endDescendants() {
    // The children of a killed process become ours, so repeat until there are none.
    for (;;) {
        const auto mine = children(getpid());
        if (mine.empty()) return;
        for (const pid_t child : mine) {
            ::kill(child, SIGKILL);
            reap(child, 0);
        }
    }
}

std::vector<pid_t> descendantsRunning(const std::filesystem::path& executable) {
    std::vector<pid_t> all;
    addDescendants(getpid(), all);
    std::erase_if(all, [&](pid_t pid) {
        std::error_code error;
        const auto path =
            std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error);
        return error || path != executable;
    });
    return all;
}

}  // namespace DesktopTest
