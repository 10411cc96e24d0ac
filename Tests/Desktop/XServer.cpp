#include "XServer.h"

#include <fcntl.h>
#include <poll.h>

#include "Eventually.h"

namespace DesktopTest {

namespace {

/// Reads the display number, which the X server writes when it is ready. Throws if it does not.
std::string readLine(int fd) {
    std::string line;
    pollfd entry{fd, POLLIN, 0};
    const auto limit = std::chrono::milliseconds(patience);
    for (char c = 0;
         poll(&entry, 1, static_cast<int>(limit.count())) > 0 && read(fd, &c, 1) == 1;) {
        if (c == '\n') return line;
        line += c;
    }
    throw std::runtime_error("the X server did not start");
}

Arguments small(const std::string& missing) {
    Arguments arguments{"Xvfb", "-screen", "0", "800x600x24"};
    if (!missing.empty()) arguments.insert(arguments.end(), {"-extension", missing});
    return arguments;
}

}  // namespace

XServer::XServer(Arguments arguments, const Environment& environment,
                 const std::filesystem::path& log) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    fcntl(ends[1], F_SETFD, 0);
    arguments.insert(arguments.end(),
                     {"-displayfd", std::to_string(ends[1]), "-nolisten", "tcp", "-noreset"});
    process_ = std::make_unique<Process>(arguments, environment, log, ends[1]);
    close(ends[1]);
    display_ = ":" + readLine(ends[0]);
    close(ends[0]);
}

XServer::XServer(const std::string& missing)
    : XServer(small(missing), {{"PATH", std::getenv("PATH")}}) {}

}  // namespace DesktopTest
