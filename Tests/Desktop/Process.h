#pragma once

#include <sys/types.h>

#include "Support/Prelude.h"
#include "Support/TemporaryFolder.h"

namespace DesktopTest {

using Environment = std::map<std::string, std::string>;
using Arguments = std::vector<std::string>;

/// One program started by a test, in a process group of its own. It is killed with its group when
/// the object goes, and by the kernel when the test itself dies.
class Process {
  public:
    /// Starts `arguments` with exactly `environment`; the first argument is looked up in its
    /// `PATH`. Standard output and error go to `log`, or nowhere when it is empty.
    /// `inherited`, when not negative, is a descriptor that the program keeps under its number.
    /// A program that can't be started exits with 127.
    Process(const Arguments& arguments, const Environment& environment,
            std::filesystem::path log = {}, int inherited = -1);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t pid() const { return pid_; }
    bool isRunning() { return !exitStatus(); }
    /// The exit code, or minus the signal that ended it; nothing while it runs.
    std::optional<int> exitStatus();
    /// Waits for the end, with patience; nothing when it did not come.
    std::optional<int> waitForExit();
    void signal(int number) const;
    /// SIGKILL, and waits until it is gone.
    void kill();
    /// What it has written so far.
    std::string output() const;

  private:
    pid_t pid_ = -1;
    std::optional<int> status_;
    std::filesystem::path log_;
};

/// Runs a program to its end and gives its exit code and what it wrote.
struct Finished {
    int status = -1;
    std::string output;
};
Finished run(const Arguments& arguments, const Environment& environment);

/// Makes this process the parent of every orphan among its descendants, so that a program that
/// detached itself can still be found and ended.
void adoptOrphans();
/// Kills every descendant that is left and waits for them.
void endDescendants();
/// Process ids of all descendants that run `executable`, by its resolved path.
std::vector<pid_t> descendantsRunning(const std::filesystem::path& executable);

}  // namespace DesktopTest
