#include "OrvelCore/StandInPolicy.h"

namespace OrvelCore {

StandInAction StandInPolicy::next(const Situation& situation) {
    if (situation.systemIsLocked) {
        sawLock_ = true;
        since_ = situation.now;
        return StandInAction::keep;
    }
    if (sawLock_) return StandInAction::withdraw;
    if (!since_) since_ = situation.now;
    const double time = situation.now - *since_;
    if (!situation.marked && time >= unmarkedPatience) return StandInAction::withdraw;
    if (time >= patience + lastPatience) return StandInAction::withdraw;
    if (situation.appRuns) return StandInAction::keep;
    const bool isDue = time >= patience && !relaunched_;
    if (!isDue && !situation.asked) return StandInAction::keep;
    relaunched_ = relaunched_ || isDue;
    return StandInAction::relaunch;
}

}  // namespace OrvelCore
