#include "XServer.h"

#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

namespace DesktopTest {

XServer::XServer(const std::string& missing) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    fcntl(ends[1], F_SETFD, 0);
    Arguments arguments{"Xvfb",      "-displayfd", std::to_string(ends[1]),
                        "-screen",   "0",          "800x600x24",
                        "-nolisten", "tcp",        "-noreset"};
    if (!missing.empty()) arguments.insert(arguments.end(), {"-extension", missing});
    process_ = std::make_unique<Process>(arguments, Environment{{"PATH", std::getenv("PATH")}}, "",
                                         ends[1]);
    close(ends[1]);
    std::string number;
    char character = 0;
    while (read(ends[0], &character, 1) == 1 && character != '\n') number += character;
    close(ends[0]);
    if (number.empty()) throw std::runtime_error("Xvfb did not start");
    display_ = ":" + number;
}

}  // namespace DesktopTest
