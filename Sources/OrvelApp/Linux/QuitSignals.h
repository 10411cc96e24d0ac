#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace OrvelApp {

/// Reports signals on the main loop. SIGTERM means the end of the session, SIGINT a request of the
/// user at the terminal; SIGHUP, when a terminal closes, is ignored. The package sends SIGURG after
/// it has replaced or removed the program's file, because that signal does not end a process that
/// does not handle it.
class QuitSignals {
  public:
    QuitSignals(std::function<void(bool sessionEnds)> asked, std::function<void()> fileChanged);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

  private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace OrvelApp
