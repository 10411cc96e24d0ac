#include "OrvelApp/Guard/Guard.h"

#include <utility>

namespace OrvelApp {

using OrvelCore::GuardAction;
using OrvelCore::GuardPolicy::onGuardStart;
using OrvelCore::GuardPolicy::onOrvelExit;

Guard::Guard(OrvelCore::LockMarkerStore markers, std::string bootSession,
             OrvelCore::GuardResponder responder, std::function<double()> clock)
    : markers_(std::move(markers)),
      bootSession_(std::move(bootSession)),
      responder_(std::move(responder)),
      clock_(std::move(clock)) {}

GuardAction Guard::started(bool orvelRunning) {
    return perform(onGuardStart(markers_.read(), bootSession_, orvelRunning), clock_());
}

GuardAction Guard::orvelExited() {
    const double now = clock_();
    return perform(onOrvelExit(markers_.read(), bootSession_, lastRelaunch_, now), now);
}

GuardAction Guard::perform(GuardAction action, double now) {
    if (action == GuardAction::engageMacOSLockAndRelaunch) lastRelaunch_ = now;
    responder_.perform(action);
    return action;
}

}  // namespace OrvelApp
