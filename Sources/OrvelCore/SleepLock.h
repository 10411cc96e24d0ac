#pragma once

#include <vector>

namespace OrvelCore {

/// Decides when this program locks because the machine sleeps or the session asks for a lock, and
/// how long it delays the sleep. It leaves both to another locker of the session, if one is known.
class SleepLock {
  public:
    /// `screenHidden`: the lock covers every display. `delayEnded`: `patience` has passed.
    /// `lockRequested`: the session asks its locker to lock.
    enum class Event {
        settingsChanged,
        sleepStarts,
        screenHidden,
        delayEnded,
        woke,
        lockRequested
    };
    enum class Effect { delaySleep, allowSleep, lock };
    struct Situation {
        /// The user's setting. It does not affect a request of the session.
        bool isOn = true;
        /// Whether this program may lock the screen at all.
        bool mayLock = true;
        bool lockerIsKnown = false;
    };

    /// The longest delay of a sleep, in seconds.
    static constexpr double patience = 2.0;
    /// Seconds from the moment the covers are up until every pixel shows them: the longest fade of
    /// a lock and a frame of a compositing manager.
    static constexpr double settling = 0.4;

    /// What to do, in this order. `delaySleep` is repeated while the sleep is already delayed.
    std::vector<Effect> handle(Event event, const Situation& situation);

  private:
    enum class Phase { awake, hiding, asleep };
    Phase phase_ = Phase::awake;
};

}  // namespace OrvelCore
