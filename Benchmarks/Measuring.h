#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "Image.h"

/// Functions that the measurements of a running program share.
namespace Measuring {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration);

/// For `main`: runs `measure` and returns the exit status. On an exception, prints it, still ends
/// the desktop, and returns 1.
int run(const std::function<void()>& measure);

/// Prints one line with the median and the spread of `values` in milliseconds, which must not be
/// empty.
void report(const std::string& what, std::vector<double> values);

/// A small tile of single pixels in two colours, so fine that any blur makes all pixels alike.
DesktopTest::Image checkerboard(DesktopTest::Colour one, DesktopTest::Colour other);

/// Processor time in seconds of all threads of the process, including finished ones; 0 if the
/// process has ended.
double secondsUsed(pid_t pid);
/// Memory in megabytes; all values are 0 if the process has ended.
struct Memory {
    double resident = 0;
    /// Shared memory divided among the processes that share it (PSS).
    double share = 0;
    /// Memory without a file: heap, stacks, and pictures shared only with the X server.
    double own = 0;
};
Memory memoryOf(pid_t pid);
/// The number of voluntary context switches of a process's running threads.
long wakeUps(pid_t pid);

}  // namespace Measuring
