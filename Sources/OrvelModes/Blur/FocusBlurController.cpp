#include "OrvelModes/Blur/FocusBlurController.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "OrvelCore/Match.h"
#include "OrvelCore/ZOrder.h"

namespace OrvelModes {

using OrvelCore::FocusPlacement;
namespace FocusPlanner = OrvelCore::FocusPlanner;
namespace ZOrder = OrvelCore::ZOrder;

FocusBlurController::FocusBlurController(FocusBlurSystem system) : system_(std::move(system)) {}

void FocusBlurController::toggle() {
    isOn_ ? turnOff() : turnOn();
}

void FocusBlurController::turnOn() {
    if (isOn_) return;
    isOn_ = true;
    onRunningChanged(true);
    sample();
    onChange(true);
}

void FocusBlurController::turnOff() {
    if (!isOn_) return;
    isOn_ = false;
    for (const auto& overlay : std::exchange(overlays_, {})) overlay.surface->hide(0);
    onRunningChanged(false);
    onChange(false);
}

void FocusBlurController::apply(OrvelCore::URLCommands::Switch change) {
    OrvelCore::URLCommands::apply(change, isOn_) ? turnOn() : turnOff();
}

void FocusBlurController::sample() {
    sample(fadeDuration());
}

void FocusBlurController::lookChanged() {
    if (!isOn_) return;
    // The new overlays are shown before the old ones are hidden, so that nothing is visible in
    // between.
    const auto old = std::exchange(overlays_, {});
    sample(0);
    for (const auto& overlay : old) overlay.surface->hide(0);
}

void FocusBlurController::sample(double duration) {
    if (!isOn_) return;
    const auto windows = system_.windows();
    const auto frontPID = system_.frontPID();
    const auto displays = system_.displays();
    const auto placements = FocusPlanner::plan(windows, displays, system_.ownPID, frontPID);
    if (!std::ranges::equal(overlays_, placements, {}, &Overlay::display, &FocusPlacement::display))
        makeOverlays(placements, duration);
    for (std::size_t i = 0; i < placements.size(); ++i) order(overlays_[i], placements[i], windows);

    OrvelCovers::WindowWatcher::Snapshot snapshot;
    for (const auto& window : windows) snapshot.numbers.push_back(window.number);
    if (const auto front = FocusPlanner::frontWindow(windows, system_.ownPID, frontPID))
        snapshot.covered.emplace(front->number, front->bounds);
    onSampled(std::move(snapshot));
}

void FocusBlurController::makeOverlays(const std::vector<FocusPlacement>& placements,
                                       double duration) {
    for (const auto& overlay : std::exchange(overlays_, {})) overlay.surface->hide(0);
    leavesOpen_ = system_.drawsOverlaysInFront();
    for (const auto& placement : placements) {
        auto surface = system_.makeSurface();
        surface->place(placement.display);
        surface->show(duration);
        overlays_.push_back({placement.display, std::move(surface)});
    }
}

// Both cases check before they act, so that a desktop at rest causes no window operation.
void FocusBlurController::order(const Overlay& overlay, const FocusPlacement& placement,
                                const std::vector<OrvelCore::WindowInfo>& windows) const {
    const auto number = overlay.surface->windowNumber();
    if (leavesOpen_) {
        const auto* const below = std::get_if<FocusPlacement::Below>(&placement.order);
        overlay.surface->leaveOpen(
            below ? FocusPlanner::takenInFront(below->window, placement.display, windows,
                                               system_.ownPID)
                  : FocusPlanner::takenByHigherLevels(placement.display, windows, system_.ownPID));
    }
    OrvelCore::match(
        placement.order,
        [&](const FocusPlacement::Below& below) {
            if (ZOrder::windowDirectlyBehind(below.window, windows) != number)
                overlay.surface->order(below.window);
        },
        [&](const FocusPlacement::Front&) {
            if (FocusPlanner::isOvertaken(number, placement.display, windows, system_.ownPID))
                overlay.surface->orderFront();
        });
}

}  // namespace OrvelModes
