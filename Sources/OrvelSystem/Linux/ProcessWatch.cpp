#include "OrvelSystem/Linux/ProcessWatch.h"

#include <QSocketNotifier>
#include <csignal>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace OrvelSystem {

std::unique_ptr<ProcessWatch> ProcessWatch::open(std::int64_t pid, std::function<void()> ended) {
    const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(pid), 0));
    if (descriptor < 0) return nullptr;
    std::unique_ptr<ProcessWatch> watch(new ProcessWatch(descriptor));
    // A process that has ended but was not reaped can still be opened.
    if (watch->hasEnded()) return nullptr;
    auto* const notifier = watch->notifier_;
    QObject::connect(notifier, &QSocketNotifier::activated, [notifier, ended = std::move(ended)] {
        notifier->setEnabled(false);
        ended();
    });
    return watch;
}

ProcessWatch::ProcessWatch(int descriptor)
    : descriptor_(descriptor), notifier_(new QSocketNotifier(descriptor, QSocketNotifier::Read)) {}

ProcessWatch::~ProcessWatch() {
    notifier_->setEnabled(false);
    notifier_->deleteLater();
    close(descriptor_);
}

bool ProcessWatch::hasEnded() const {
    pollfd end{descriptor_, POLLIN, 0};
    return poll(&end, 1, 0) > 0;
}

void ProcessWatch::signal(int number) const {
    syscall(SYS_pidfd_send_signal, descriptor_, number, nullptr, 0);
}

}  // namespace OrvelSystem
