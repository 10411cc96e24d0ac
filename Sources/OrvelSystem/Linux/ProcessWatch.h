#pragma once

#include <cstdint>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace OrvelSystem {

/// One process, told from a later one that gets the same number. Main thread only.
class ProcessWatch {
  public:
    /// `ended` is called once, in a later turn of the loop. Null for a process that has ended.
    static std::unique_ptr<ProcessWatch> open(std::int64_t pid, std::function<void()> ended);
    ~ProcessWatch();
    ProcessWatch(const ProcessWatch&) = delete;
    ProcessWatch& operator=(const ProcessWatch&) = delete;

    bool hasEnded() const;
    /// Nothing happens once it has ended, or when it is not ours to signal.
    void signal(int number) const;

  private:
    explicit ProcessWatch(int descriptor);

    int descriptor_;  // a pidfd
    // Dropped in a later turn, since it may be the one that calls.
    QSocketNotifier* notifier_;
};

}  // namespace OrvelSystem
