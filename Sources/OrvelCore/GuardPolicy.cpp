#include "OrvelCore/GuardPolicy.h"

namespace OrvelCore {

namespace {

bool isLive(const std::optional<LockMarker>& marker, std::string_view bootSession) {
    return marker && marker->bootSession == bootSession;
}

}  // namespace

GuardAction GuardPolicy::onOrvelExit(const std::optional<LockMarker>& marker,
                                     std::string_view bootSession,
                                     std::optional<double> lastRelaunch, double now) {
    if (!isLive(marker, bootSession)) return GuardAction::stay;
    if (marker->isHandedOff || (lastRelaunch && now - *lastRelaunch < relaunchCooldown))
        return GuardAction::engageMacOSLock;
    return GuardAction::engageMacOSLockAndRelaunch;
}

GuardAction GuardPolicy::onGuardStart(const std::optional<LockMarker>& marker,
                                      std::string_view bootSession, bool orvelRunning) {
    if (orvelRunning || !isLive(marker, bootSession)) return GuardAction::stay;
    if (marker->isHandedOff) return GuardAction::engageMacOSLock;
    // The app died while no guard was running.
    return GuardAction::engageMacOSLockAndRelaunch;
}

void GuardResponder::perform(GuardAction action) const {
    // Lock first: the screen must not stay open for the duration of a relaunch.
    if (action != GuardAction::stay) engageLock();
    if (action == GuardAction::engageMacOSLockAndRelaunch) relaunch();
}

}  // namespace OrvelCore
