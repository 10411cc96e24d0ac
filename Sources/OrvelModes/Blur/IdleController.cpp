#include "OrvelModes/Blur/IdleController.h"

#include <algorithm>
#include <utility>

#include "OrvelCore/IdlePolicy.h"

namespace OrvelModes {

using OrvelCore::IdleAction;

IdleController::IdleController(OrvelCore::IdleSettings settings, IdleSources sources,
                               OrvelCovers::Ticker& ticker)
    : settings_(std::move(settings)), sources_(std::move(sources)), ticker_(ticker) {
    schedule();
}

IdleController::~IdleController() {
    ticker_.stop();
}

void IdleController::setSettings(OrvelCore::IdleSettings settings) {
    settings_ = std::move(settings);
    schedule();
}

void IdleController::schedule() {
    if (!settings_.blurAfter && !settings_.lockAfter)
        ticker_.stop();
    else if (!ticker_.isRunning())
        ticker_.start(interval, [this] { tick(); });
}

void IdleController::tick() {
    const double now = sources_.now();
    const bool kept = sources_.displayKeptAwake();
    if (kept) keptAwakeAt_ = now;
    const double input = sources_.idleSeconds();
    // A video or a call counts as presence: the timer is zero while it lasts, and afterwards runs
    // from its end and not from the last input.
    const double timer = keptAwakeAt_ ? std::min(input, now - *keptAwakeAt_) : input;
    const bool locked = isMacLocked() || sources_.sessionLocked();
    switch (OrvelCore::IdlePolicy::action(input, timer, kept, settings_, blurredByIdle_, locked)) {
        case IdleAction::none:
            break;
        case IdleAction::blur:
            // A blur that the user started is not taken over, because it would then end by itself.
            if (isQuickBlurred()) break;
            blurredByIdle_ = true;
            onBlur();
            break;
        case IdleAction::lock:
            onLock();
            if (std::exchange(blurredByIdle_, false)) onReveal();
            break;
        case IdleAction::reveal:
            blurredByIdle_ = false;
            onReveal();
            break;
    }
}

}  // namespace OrvelModes
