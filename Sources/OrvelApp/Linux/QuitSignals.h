#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace OrvelApp {

/// Signals that the program acts on, told on the main loop. SIGTERM is the session's end; SIGINT is
/// the user at the terminal it was started from; a terminal that closes says nothing. By SIGURG,
/// which ends no process that does not know it, the package says that it has replaced or removed
/// the program's file.
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
