#include <utility>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/Looks.h"

namespace OrvelApp {

using namespace OrvelCore;
using namespace OrvelModes;

void AppDelegate::installModes(OrvelBlur::BlurBackend backend) {
    auto& live = system_.modes;
    quickBlur_ = std::make_unique<QuickBlurController>(live.quickBlur(
        backend,
        [this] {
            return Looks::quickBlur(prefs_, system_.reduceTransparency(), system_.darkAppearance());
        },
        [this] { return isMacLocked() || lockStarting_; }));
    focusBlur_ = std::make_unique<FocusBlurController>(live.focusBlur(backend, [this] {
        return Looks::focusBlur(prefs_, system_.reduceTransparency(), system_.darkAppearance());
    }));
    appearanceObservation_ =
        live.observeAppearance(lifetime_.guard([this] { refreshFocusLook(); }));

    // A second watcher, because each one compares with the snapshot of its own receiver.
    focusWatcher_ = std::make_unique<OrvelCovers::WindowWatcher>(
        system_.covers.watcherReads, [&loop = system_.loop, changed = lifetime_.guard([this] {
            focusBlur_->sample();
        })] { loop.post(changed); });
    focusWatcher_->follow(*focusBlur_);
    focusBlur_->onChange = [this](bool) { stateChanged(); };
    quickBlur_->onChange = [this](bool isBlurred) {
        if (!isBlurred && idle_) idle_->quickBlurEnded();
        stateChanged();
        becameFree();
    };
    installTriggers();
}

void AppDelegate::installTriggers() {
    auto& live = system_.modes;
    idleTicker_ = std::make_unique<OrvelCovers::TimerTicker>(system_.loop);
    idle_ = std::make_unique<IdleController>(triggers_.idle(), live.idle, *idleTicker_);
    idle_->onBlur = [this] { quickBlur_->blur(); };
    idle_->onLock = [this] { lockNow(true); };
    idle_->onReveal = [this] { quickBlur_->reveal(); };
    idle_->isMacLocked = [this] { return isMacLocked(); };
    idle_->isQuickBlurred = [this] { return quickBlur_->isBlurred(); };

    hotCorner_ =
        std::make_unique<HotCornerController>(system_.loop, live.makeCornerPanel, live.screens);
    hotCorner_->onFire = [this](TriggerSettings::CornerAction action) {
        switch (action) {
            case TriggerSettings::CornerAction::lock:
                lockNow(false);
                break;
            case TriggerSettings::CornerAction::quickBlur:
                quickBlur_->apply(URLCommands::Switch::on);
                break;
        }
    };
    configureCorner();
    if (system_.delaySleep) installSleep();
}

void AppDelegate::installSleep() {
    sleep_ = std::make_unique<SleepController>(
        system_.loop, SleepSources{.situation =
                                       [this] {
                                           return SleepLock::Situation{
                                               .isOn = triggers_.locksBeforeSleep,
                                               .mayLock = mayLockScreen(),
                                               .lockerIsKnown = system_.sessionLockerIsKnown()};
                                       },
                                   .delaySleep = system_.delaySleep,
                                   .lock =
                                       [this] {
                                           if (isMacLocked() && !lockStarting_)
                                               sleep_->screenCovered();
                                           else
                                               lockNow(true);
                                       }});
}

bool AppDelegate::mayLockScreen() const {
    return system_.capabilities.ownLock && system_.passwordSuffices();
}

void AppDelegate::configureCorner() {
    const bool isPossible = system_.capabilities.hotCorners;
    hotCorner_->configure(isPossible ? triggers_.hotCorner : std::nullopt,
                          triggers_.hotCornerAction);
}

void AppDelegate::refreshFocusLook() {
    const auto look =
        Looks::focusBlur(prefs_, system_.reduceTransparency(), system_.darkAppearance());
    // Rebuilding overlays is expensive, and most changes of the preferences do not affect them.
    if (focusLookShown_ == look) return;
    focusLookShown_ = look;
    focusBlur_->lookChanged();
}

void AppDelegate::switchQuickBlur(URLCommands::Switch change) {
    if (system_.capabilities.screenBlur) quickBlur_->apply(change);
}

void AppDelegate::switchFocusBlur(URLCommands::Switch change) {
    if (system_.capabilities.focusBlur) return focusBlur_->apply(change);
    toasts_.show("Focus Blur is not available", letsNoneCover, "eye.slash");
}

}  // namespace OrvelApp
