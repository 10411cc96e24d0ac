// Stands in for the app, and under another name for the screen locker: says in the file that
// STAND_IN_LOG names that it runs, and then waits to be killed, or ends at once when told to.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

int main(int, char** arguments) {
    const char* const slash = std::strrchr(arguments[0], '/');
    const char* const name = slash ? slash + 1 : arguments[0];
    const char* const display = std::getenv("DISPLAY");
    const char* const log = std::getenv("STAND_IN_LOG");
    if (std::FILE* const file = log ? std::fopen(log, "a") : nullptr) {
        std::fprintf(file, "%s %d %s\n", name, static_cast<int>(getpid()), display ? display : "-");
        std::fclose(file);
    }
    const bool stays = std::strcmp(name, "Karvo") == 0 && !std::getenv("STAND_IN_ENDS");
    return stays ? pause() : 0;
}
