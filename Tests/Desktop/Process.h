#pragma once

#include <sys/types.h>

#include "Support/TemporaryFolder.h"

namespace DesktopTest {

using Environment = std::map<std::string, std::string>;
using Arguments = std::vector<std::string>;

/// A program that a test starts, in its own process group. The destructor kills the group, and the
/// kernel kills the program if the test process dies.
class Process {
  public:
    /// Starts `arguments` with exactly `environment`; the first argument is looked up in its
    /// `PATH`. Standard output and error go to `log`, or are discarded if it is empty. `inherited`,
    /// unless negative, is a file descriptor that the program inherits. A program that cannot be
    /// started exits with 127.
    Process(const Arguments& arguments, const Environment& environment,
            std::filesystem::path log = {}, int inherited = -1);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t pid() const { return pid_; }
    bool isRunning() { return !exitStatus(); }
    /// The exit code, or the negated number of the signal that ended it; empty while it runs.
    std::optional<int> exitStatus();
    /// Waits up to `patience` for the exit; empty if it still runs.
    std::optional<int> waitForExit();
    void signal(int number) const;
    /// Sends SIGKILL and waits until the process has ended.
    void kill();
    /// The program's output so far.
    std::string output() const;

  private:
    pid_t pid_ = -1;
    std::optional<int> status_;
    std::filesystem::path log_;
};

/// Runs a program to its end and returns its exit status and output.
struct Finished {
    int status = -1;
    std::string output;
};
Finished run(const Arguments& arguments, const Environment& environment);

/// Makes this process the parent of orphaned descendants, so that a program that has detached
/// itself can still be found and ended.
void adoptOrphans();
/// Kills all remaining descendants and waits for them.
void endDescendants();
/// Process ids of all descendants that run `executable`, given by its resolved path.
std::vector<pid_t> descendantsRunning(const std::filesystem::path& executable);

}  // namespace DesktopTest
