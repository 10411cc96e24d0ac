#include "OrvelApp/Linux/QuitSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace OrvelApp {

namespace {

// A signal handler may call little more than `write`, so it writes to this pipe.
std::array<int, 2> channel{-1, -1};

void handle(int signal) {
    const auto byte = static_cast<unsigned char>(signal);
    const int error = errno;  // of the interrupted code
    [[maybe_unused]] const auto written = write(channel[1], &byte, 1);
    errno = error;
}

void setHandler(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

}  // namespace

QuitSignals::QuitSignals(std::function<void(bool sessionEnds)> asked,
                         std::function<void()> fileChanged) {
    setHandler(SIGHUP, SIG_IGN);
    if (pipe2(channel.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(channel[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated,
                     [asked = std::move(asked), fileChanged = std::move(fileChanged)] {
                         unsigned char signal = 0;
                         while (read(channel[0], &signal, 1) == 1) {
                             if (signal == SIGURG)
                                 fileChanged();
                             else
                                 asked(signal == SIGTERM);
                         }
                     });
    setHandler(SIGTERM, handle);
    setHandler(SIGINT, handle);
    setHandler(SIGURG, handle);
}

QuitSignals::~QuitSignals() {
    setHandler(SIGTERM, SIG_DFL);
    setHandler(SIGINT, SIG_DFL);
    setHandler(SIGURG, SIG_DFL);
    notifier_.reset();
    for (int& end : channel) {
        if (end >= 0) close(std::exchange(end, -1));
    }
}

}  // namespace OrvelApp
