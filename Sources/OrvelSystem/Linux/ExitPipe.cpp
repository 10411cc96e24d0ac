#include "OrvelSystem/Linux/ExitPipe.h"

#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvelSystem {

void ExitPipe::keep() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    // Replaces a file with this number that the process has inherited.
    dup3(ends[1], number, O_CLOEXEC);
    for (const int end : ends) close(end);
}

int ExitPipe::openOf(std::int64_t pid) {
    const auto path =
        std::filesystem::path("/proc") / std::to_string(pid) / "fd" / std::to_string(number);
    struct stat info {};
    // Opening a file of another kind could have side effects.
    if (stat(path.c_str(), &info) != 0 || !S_ISFIFO(info.st_mode)) return -1;
    return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
}

}  // namespace OrvelSystem
