#include "OrvelModes/Windows/OnboardingWindowController.h"

#include <utility>

namespace OrvelModes {

void OnboardingWindowController::show() {
    if (!window_) prepare();
    if (!system_.isActive()) floatUntilActive(*window_, false);
    system_.activate();
    window_->makeKeyAndOrderFront();
    window_->orderFrontRegardless();
}

void OnboardingWindowController::prepare() {
    window_ = system_.makeWindow(model);
    window_->center();
    window_->onWillClose = lifetime_.guard([this] {
        if (std::exchange(finished_, true)) return;
        const auto told = onClosedEarly;
        told();
    });
}

void OnboardingWindowController::floatUntilActive(AppWindow& window, bool appIsActive) {
    window.setLevel(appIsActive ? AppWindow::Level::normal : AppWindow::Level::floating);
    if (appIsActive) return;
    activeObserver_ = system_.observeActivation(lifetime_.guard([this, &window] {
        const auto keepAlive = std::move(activeObserver_);
        window.setLevel(AppWindow::Level::normal);
    }));
}

void OnboardingWindowController::bringBack() {
    if (!window_ || !window_->isVisible()) return;
    system_.activate();
    window_->makeKeyAndOrderFront();
}

void OnboardingWindowController::finish() {
    finished_ = true;
    if (window_) window_->close();
}

}  // namespace OrvelModes
