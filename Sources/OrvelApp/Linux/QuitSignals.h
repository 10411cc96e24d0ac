#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace OrvelApp {

/// Signals that ask the program to end, told on the main loop. SIGTERM is the session's end;
/// SIGINT is the user at the terminal it was started from; a terminal that closes says nothing.
class QuitSignals {
  public:
    explicit QuitSignals(std::function<void(bool sessionEnds)> asked);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

  private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace OrvelApp
