#pragma once

#include <cstdint>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace OrvelSystem {

/// Watches one process. It cannot be confused with a later process that gets the same ID. Main
/// thread only.
class ProcessWatch {
  public:
    /// `ended` is called once, in a later turn of the loop. Returns null if the process has ended
    /// or cannot be opened.
    static std::unique_ptr<ProcessWatch> open(std::int64_t pid, std::function<void()> ended);
    ~ProcessWatch();
    ProcessWatch(const ProcessWatch&) = delete;
    ProcessWatch& operator=(const ProcessWatch&) = delete;

    bool hasEnded() const;
    /// Does nothing if the process has ended or this user may not signal it.
    void signal(int number) const;

  private:
    explicit ProcessWatch(int descriptor);

    int descriptor_;  // a pidfd
    // Destroyed in a later turn of the loop, since its own signal may have caused the destruction.
    QSocketNotifier* notifier_;
};

}  // namespace OrvelSystem
