#include "OrvelModes/Blur/QuickBlurController.h"

#include <algorithm>
#include <utility>

namespace OrvelModes {

QuickBlurController::QuickBlurController(QuickBlurSystem system) : system_(std::move(system)) {}

void QuickBlurController::toggle() {
    isBlurred_ ? reveal() : blur();
}

void QuickBlurController::blur() {
    if (isBlurred_) return;
    isBlurred_ = true;
    const bool locked = system_.macLocked();
    previousApp_ = system_.frontApp();
    if (!locked) system_.activateOrvel();
    cover(fadeDuration(), !locked);
    onChange(true);
}

void QuickBlurController::reveal() {
    if (!isBlurred_) return;
    isBlurred_ = false;
    uncover(fadeDuration());
    if (const auto app = std::exchange(previousApp_, {})) {
        if (system_.macLocked())
            pendingHandBack_ = app;
        else
            system_.activateApp(*app);
    }
    onChange(false);
}

void QuickBlurController::apply(OrvelCore::URLCommands::Switch change) {
    OrvelCore::URLCommands::apply(change, isBlurred_) ? blur() : reveal();
}

void QuickBlurController::screensChanged() {
    if (!isBlurred_) return;
    uncover(0);
    cover(0, !system_.macLocked());
}

void QuickBlurController::lockEnded() {
    if (isBlurred_ && keyboardSurface_ != nullptr) {
        // The blur could not take the keyboard while the lock held it.
        system_.activateOrvel();
        keyboardSurface_->takeKeyboard();
    } else if (const auto app = std::exchange(pendingHandBack_, {})) {
        system_.activateApp(*app);
    }
}

void QuickBlurController::cover(double duration, bool takeKeyboard) {
    const auto displays = system_.displays();
    auto keyboardDisplay = std::ranges::find_if(
        displays, [](const OrvelCore::Rect& display) { return display.x == 0 && display.y == 0; });
    if (keyboardDisplay == displays.end()) keyboardDisplay = displays.begin();
    for (auto display = displays.begin(); display != displays.end(); ++display) {
        const bool hasKeyboard = display == keyboardDisplay;
        auto& surface = *surfaces_.emplace_back(system_.makeSurface(hasKeyboard));
        surface.place(*display);
        if (hasKeyboard) {
            const auto revealed = lifetime_.guard([this] { reveal(); });
            surface.setContent(system_.pill(*display, revealed));
            surface.onCancel = revealed;
        }
        surface.show(duration);
        if (!hasKeyboard) continue;
        if (takeKeyboard) surface.takeKeyboard();
        keyboardSurface_ = &surface;
    }
}

void QuickBlurController::uncover(double duration) {
    keyboardSurface_ = nullptr;
    for (const auto& surface : std::exchange(surfaces_, {})) surface->hide(duration);
}

}  // namespace OrvelModes
