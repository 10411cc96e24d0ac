// Replaces the app and, under another name, the screen locker. It records its start in the file
// STAND_IN_LOG and then waits to be killed, or exits immediately if requested. After SIGUSR1 it is
// like a process that the kernel takes long to end.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#include "OrvelSystem/Linux/ExitPipe.h"

int main(int, char** arguments) {
    OrvelSystem::ExitPipe::keep();
    std::signal(SIGUSR1, [](int) { close(OrvelSystem::ExitPipe::number); });
    const char* const slash = std::strrchr(arguments[0], '/');
    const char* const name = slash ? slash + 1 : arguments[0];
    const char* const display = std::getenv("DISPLAY");
    const char* const log = std::getenv("STAND_IN_LOG");
    if (std::FILE* const file = log ? std::fopen(log, "a") : nullptr) {
        std::fprintf(file, "%s %d %s\n", name, static_cast<int>(getpid()), display ? display : "-");
        std::fclose(file);
    }
    const bool stays = std::strcmp(name, "Karvo") == 0;
    while (stays) pause();
    return 0;
}
