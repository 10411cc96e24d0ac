#include "OrvelCore/IdlePolicy.h"

namespace OrvelCore::IdlePolicy {

IdleAction action(double inputIdle, double timerIdle, bool displayKeptAwake,
                  const IdleSettings& settings, bool blurredByIdle, bool locked) {
    const bool isBack = blurredByIdle && inputIdle < inputThreshold;
    if (isBack) return IdleAction::reveal;
    if (displayKeptAwake || locked) return IdleAction::none;
    // The lock is the stronger action, so it comes first, even if the screen is blurred already.
    if (settings.lockAfter && timerIdle >= *settings.lockAfter) return IdleAction::lock;
    if (settings.blurAfter && !blurredByIdle && timerIdle >= *settings.blurAfter)
        return IdleAction::blur;
    return IdleAction::none;
}

IdleAction action(double idle, bool displayKeptAwake, const IdleSettings& settings,
                  bool blurredByIdle, bool locked) {
    return action(idle, idle, displayKeptAwake, settings, blurredByIdle, locked);
}

}  // namespace OrvelCore::IdlePolicy
