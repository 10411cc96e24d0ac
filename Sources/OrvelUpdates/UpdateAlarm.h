#pragma once

#include <functional>

#include "OrvelCore/Date.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelUpdates {

/// Calls a function at a date that may be a day ahead. The loop's timers stop while the machine is
/// suspended, but this alarm does not: after a suspension it is at most `longestNap` late. Changes
/// of the wall clock have no effect. Main thread only.
class UpdateAlarm {
  public:
    /// In seconds. A shorter time would wake the processor more often.
    static constexpr double longestNap = 900;

    /// `continuousClock` returns seconds and continues to count while the machine is suspended.
    UpdateAlarm(OrvelSystem::MainLoop& loop, std::function<double()> continuousClock,
                std::function<OrvelCore::Date()> now);

    /// Calls `call` at `date`, or as soon as possible if `date` is past, but never inside `set`.
    /// Replaces a pending call.
    void set(OrvelCore::Date date, std::function<void()> call);

  private:
    void wait();
    void wake();

    OrvelSystem::MainLoop& loop_;
    std::function<double()> continuousClock_;
    std::function<OrvelCore::Date()> now_;
    std::function<void()> call_;
    // In seconds of the continuous clock.
    double due_ = 0;
    OrvelSystem::Timer nap_;
};

}  // namespace OrvelUpdates
