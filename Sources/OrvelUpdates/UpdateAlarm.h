#pragma once

#include <functional>

#include "OrvelCore/Date.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelUpdates {

/// One call at a date that may lie a day ahead. The loop's own timers stand still while the machine
/// sleeps, and this one does not: after a sleep it is late by `longestNap` at most. A wall clock
/// that is set meanwhile changes nothing. Main thread only.
class UpdateAlarm {
  public:
    /// Seconds; a compromise with waking the processor for nothing.
    static constexpr double longestNap = 900;

    /// `continuousClock` counts seconds, those of sleep too.
    UpdateAlarm(OrvelSystem::MainLoop& loop, std::function<double()> continuousClock,
                std::function<OrvelCore::Date()> now);

    /// Never inside the call; as soon as may be when the date is past. Takes the place of a call
    /// that is still to come.
    void set(OrvelCore::Date date, std::function<void()> call);

  private:
    void wait();
    void wake();

    OrvelSystem::MainLoop& loop_;
    std::function<double()> continuousClock_;
    std::function<OrvelCore::Date()> now_;
    std::function<void()> call_;
    // By the continuous clock.
    double due_ = 0;
    OrvelSystem::Timer nap_;
};

}  // namespace OrvelUpdates
