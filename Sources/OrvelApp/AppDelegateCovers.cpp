#include <utility>

#include "OrvelApp/AppDelegate.h"

namespace OrvelApp {

using namespace OrvelCovers;

void AppDelegate::installCovers(OrvelBlur::BlurBackend backend) {
    auto& live = system_.covers;
    covers_ =
        std::make_unique<CoverController>([this, backend](const OrvelCore::CoverRequest& request) {
            return system_.covers.makeSurface(
                request, backend,
                lifetime_.guard([this, pid = request.pid] { appLock_->requestUnlock(pid); }));
        });
    coverTicker_ = std::make_unique<TimerTicker>(system_.loop);
    coverLoop_ = std::make_unique<CoverLoop>(*covers_, live.sources, *coverTicker_);
    // The watcher's thread must not access the delegate, so only the closure on the main loop does.
    windowWatcher_ = std::make_unique<WindowWatcher>(
        live.watcherReads, [&loop = system_.loop, changed = lifetime_.guard([this] {
            coverLoop_->somethingChanged();
        })] { loop.post(changed); });
    windowWatcher_->follow(*coverLoop_);

    badges_ = std::make_unique<AppKitBadgePresenter>(live.badges);
    auto appLock = live.appLock;
    appLock.accountLimit = system_.accountLimit;
    appLock.accountFailures = system_.accountFailures;
    appLock.mayLock = [this] { return mayLockApps(); };
    appLock.macIsLocked = [this] { return isMacLocked(); };
    appLock.engageMacOSLock = [this] { handoff_->engageMacOSLock(); };
    appLock_ = std::make_unique<AppLockController>(*coverLoop_, *badges_, std::move(appLock));
    badges_->onRequestUnlock = [this](std::int64_t pid) { appLock_->requestUnlock(pid); };
    badges_->onCancelUnlock = [this](std::int64_t pid) { appLock_->cancelUnlock(pid); };
    appLock_->onLocksChanged = [this] {
        stateChanged();
        becameFree();
    };
    coverLoop_->onTick = [this](const auto& windows) { appLock_->windowsChanged(windows); };
    privateApps_ =
        std::make_unique<PrivateAppsController>(*coverLoop_, system_.defaults, live.running);

    appLock_->prepareModel = [this](OrvelUI::LockCardModel& model) {
        model.onStatusChange =
            lifetime_.guard([this](const OrvelUI::LockCardModel::Status& status) {
                feedback_->handle(OrvelUI::LockFeedback::StatusChanged{status});
            });
    };

    const auto nudge = [this] {
        coverLoop_->nudge();
        if (focusBlur_) focusBlur_->sample();
    };
    OrvelSystem::Workspace::Events events;
    events.activated = [this, nudge](std::int64_t pid) {
        nudge();
        if (pid != 0) appLock_->appActivated(pid);
    };
    events.launched = [this](std::int64_t) {
        privateApps_->refresh();
        stateChanged();
    };
    events.terminated = [this](std::int64_t pid) {
        appLock_->appTerminated(pid);
        privateApps_->refresh();
        stateChanged();
    };
    events.activeSpaceChanged = nudge;
    events.unhidden = nudge;
    workspaceObserver_ = live.observeWorkspace(std::move(events));
}

bool AppDelegate::mayLockApps() {
    const bool canCover = system_.capabilities.appCovers;
    if (canCover && system_.passwordSuffices()) return true;
    toasts_.show("Apps cannot be locked", canCover ? asksForMore : letsNoneCover,
                 "exclamationmark.lock");
    return false;
}

int AppDelegate::appLocks() const {
    return appLock_ ? static_cast<int>(appLock_->lockedPIDs().size()) : 0;
}

}  // namespace OrvelApp
