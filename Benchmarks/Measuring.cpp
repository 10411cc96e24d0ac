#include "Measuring.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>

#include <fmt/format.h>

#include "Process.h"

namespace Measuring {

namespace {

/// Returns the number after `name` in a file of the kernel; 0 if there is none.
double numberIn(const std::filesystem::path& file, const std::string& name) {
    std::ifstream stream(file);
    std::string word;
    while (stream >> word) {
        double number = 0;
        if (word == name && stream >> number) return number;
    }
    return 0;
}

}  // namespace

int run(const std::function<void()>& measure) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    DesktopTest::adoptOrphans();
    int result = 0;
    try {
        measure();
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        result = 1;
    }
    return result;
}

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

void report(const std::string& what, std::vector<double> values) {
    std::ranges::sort(values);
    const auto at = [&values](double part) {
        return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
    };
    fmt::print("{:<44} median {:6.2f} ms   10 % {:6.2f}   90 % {:6.2f}   worst {:6.2f}\n", what,
               at(0.5), at(0.1), at(0.9), at(1));
}

DesktopTest::Image checkerboard(DesktopTest::Colour one, DesktopTest::Colour other) {
    DesktopTest::Image result(64, 64);
    for (int y = 0; y < result.height; ++y)
        for (int x = 0; x < result.width; ++x) result.at(x, y) = (x + y) % 2 == 0 ? one : other;
    return result;
}

double secondsUsed(pid_t pid) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0) return 0;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

Memory memoryOf(pid_t pid) {
    const auto megabytes = [file = fmt::format("/proc/{}/smaps_rollup", pid)](const char* name) {
        return numberIn(file, name) / 1024;
    };
    return {megabytes("Rss:"), megabytes("Pss:"), megabytes("Pss_Anon:") + megabytes("Pss_Shmem:")};
}

long wakeUps(pid_t pid) {
    double sum = 0;
    for (const auto& thread :
         std::filesystem::directory_iterator(fmt::format("/proc/{}/task", pid)))
        sum += numberIn(thread.path() / "status", "voluntary_ctxt_switches:");
    return static_cast<long>(sum);
}

}  // namespace Measuring
