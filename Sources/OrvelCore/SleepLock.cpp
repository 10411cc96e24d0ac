#include "OrvelCore/SleepLock.h"

namespace OrvelCore {

std::vector<SleepLock::Effect> SleepLock::handle(Event event, const Situation& situation) {
    const bool isResponsible = situation.mayLock && !situation.lockerIsKnown;
    const bool locksAtSleep = isResponsible && situation.isOn;
    switch (event) {
        case Event::woke:
            phase_ = Phase::awake;
            [[fallthrough]];
        case Event::settingsChanged:
            if (phase_ != Phase::awake) return {};
            return {locksAtSleep ? Effect::delaySleep : Effect::allowSleep};
        case Event::sleepStarts:
            if (phase_ != Phase::awake) return {};
            // A locker may have started or ended since the delay was requested.
            phase_ = locksAtSleep ? Phase::hiding : Phase::asleep;
            return {locksAtSleep ? Effect::lock : Effect::allowSleep};
        case Event::screenHidden:
        case Event::delayEnded:
            if (phase_ != Phase::hiding) return {};
            phase_ = Phase::asleep;
            return {Effect::allowSleep};
        case Event::lockRequested:
            if (!isResponsible) return {};
            return {Effect::lock};
    }
    return {};
}

}  // namespace OrvelCore
