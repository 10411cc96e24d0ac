#include "OrvelLock/KioskController.h"

#include <utility>

namespace OrvelLock {

namespace {

constexpr double pollInterval = 0.01;

}  // namespace

KioskController::KioskController(KioskSystem system) : system_(std::move(system)) {
    system_.observe(lifetime_.guard([this] { onDisturbed(); }));
}

OrvelSystem::Task<bool> KioskController::engage() {
    if (const auto front = system_.frontmostApp(); front && front->pid != system_.ownPID)
        previousApp_ = front;
    system_.setRegular();
    system_.activate();
    const double start = system_.loop.uptime();
    bool active = system_.tryActivate();
    while (!active && system_.loop.uptime() - start < system_.activationTimeout) {
        co_await OrvelSystem::Sleep(system_.loop, pollInterval);
        active = system_.tryActivate();
    }
    if (active) system_.setPresentationOptions(options);
    co_return active;
}

void KioskController::release(bool restoringFocus) {
    system_.setPresentationOptions(0);
    system_.setAccessory();
    const auto previous = std::exchange(previousApp_, std::nullopt);
    if (restoringFocus && previous) system_.activateApp(*previous);
}

void KioskController::prepare() {
    system_.prepare();
}

bool KioskController::reassert() {
    return system_.reassert();
}

void KioskController::yield() {
    system_.yield();
}

bool KioskController::isHeldBySystemLock() {
    return system_.isHeldBySystemLock();
}

bool KioskController::reportsLosses() const {
    return system_.reportsLosses();
}

}  // namespace OrvelLock
