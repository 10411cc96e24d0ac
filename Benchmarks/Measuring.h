#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

/// What measurements of a running program share.
namespace Measuring {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration);

/// For `main`: 0 when all went well. What goes wrong is said, and the desktop ended all the same.
int run(const std::function<void()>& measure);

/// One line: the median and the spread of values in milliseconds, which are not empty.
void report(const std::string& what, std::vector<double> values);

/// Of all threads of the process, those that have ended too. 0 when it is gone.
double secondsUsed(pid_t pid);
/// Megabytes; all 0 when the process is gone.
struct Memory {
    double resident = 0;
    /// With what it shares divided among those who share it ("PSS").
    double share = 0;
    /// What is no file's: its heap, stacks, and pictures shared with the X server alone.
    double own = 0;
};
Memory memoryOf(pid_t pid);
/// How often a process's threads, without those that have ended, have gone to sleep by themselves.
long wakeUps(pid_t pid);

}  // namespace Measuring
