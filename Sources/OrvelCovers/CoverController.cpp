#include "OrvelCovers/CoverController.h"

#include <algorithm>
#include <ranges>
#include <unordered_map>
#include <utility>

#include "OrvelCore/ZOrder.h"

namespace OrvelCovers {

using OrvelCore::CoverKind;
using OrvelCore::CoverRequest;

namespace {

/// False if one of the two is not in `windows`.
bool isAbove(OrvelCore::WindowID one, OrvelCore::WindowID other,
             const std::vector<OrvelCore::WindowInfo>& windows) {
    const auto upper = std::ranges::find(windows, one, &OrvelCore::WindowInfo::number);
    return upper != windows.end() &&
           std::ranges::find(upper, windows.end(), other, &OrvelCore::WindowInfo::number) !=
               windows.end();
}

}  // namespace

std::set<OrvelCore::WindowID> CoverController::coveredWindows() const {
    std::set<OrvelCore::WindowID> windows;
    for (const auto& [window, live] : live_) windows.insert(windows.end(), window);
    return windows;
}

std::optional<OrvelCore::WindowID> CoverController::surfaceNumber(
    OrvelCore::WindowID window) const {
    const auto found = live_.find(window);
    if (found == live_.end()) return std::nullopt;
    return found->second.surface->windowNumber();
}

std::optional<OrvelCore::WindowID> CoverController::frontNumber(OrvelCore::WindowID window) const {
    const auto found = live_.find(window);
    if (found == live_.end()) return std::nullopt;
    return found->second.surface->frontNumber();
}

std::optional<CoverRequest> CoverController::request(OrvelCore::WindowID window) const {
    const auto found = live_.find(window);
    if (found == live_.end()) return std::nullopt;
    return found->second.request;
}

void CoverController::apply(const std::vector<CoverRequest>& plan,
                            const std::vector<OrvelCore::WindowInfo>& windows) {
    std::unordered_map<OrvelCore::WindowID, const CoverRequest*> wanted;
    for (const auto& request : plan) wanted.emplace(request.window, &request);
    for (auto entry = live_.begin(); entry != live_.end();) {
        const auto& [window, live] = *entry;
        const auto found = wanted.find(window);
        // The level and the handling of clicks are fixed when a surface is made.
        if (found != wanted.end() && found->second->kind == live.request.kind &&
            found->second->layer == live.request.layer) {
            ++entry;
            continue;
        }
        live.surface->remove();
        entry = live_.erase(entry);
    }

    bool isOrdered = false;
    for (const auto& request : plan) {
        const auto found = live_.find(request.window);
        if (found != live_.end()) {
            auto& live = found->second;
            if (live.request.rect != request.rect) live.surface->place(request.rect);
            if (live.request.inFront != request.inFront) live.surface->drawInFront(request.inFront);
            live.request = request;
            isOrdered |= order(live, windows);
            continue;
        }
        auto surface = makeSurface_(request);
        surface->place(request.rect);
        surface->drawInFront(request.inFront);
        surface->show(request.kind == CoverKind::privateApp);
        surface->order(request.window);
        live_.emplace(request.window, Live{request, std::move(surface), {}, false});
        isOrdered = true;
    }
    if (!isOrdered) return stackLikeWindows(plan, windows);
    for (auto& [window, live] : live_) live.isRaised = false;
}

/// A window manager that puts covers in front of all windows may put the cover of a window in front
/// of the cover of a window above it, and with it what is drawn onto it. Each cover is raised once
/// after the covers were ordered, because the window manager may undo it.
void CoverController::stackLikeWindows(const std::vector<CoverRequest>& plan,
                                       const std::vector<OrvelCore::WindowInfo>& windows) {
    std::optional<OrvelCore::WindowID> behind;
    for (const auto& request : plan | std::views::reverse) {
        if (!request.isDrawnInFront) return;
        auto& live = live_.at(request.window);
        if (behind && !live.isRaised && isAbove(*behind, live.surface->windowNumber(), windows)) {
            live.isRaised = true;
            live.surface->order(*behind);
        }
        behind = live.surface->frontNumber();
    }
}

/// A window manager that draws covers in front of all windows may also put them there in the stack,
/// each time again. A cover that is above its window is ordered once for each window that is
/// directly in front. Returns whether the cover was ordered.
bool CoverController::order(Live& live, const std::vector<OrvelCore::WindowInfo>& windows) {
    const auto window = live.request.window;
    const auto front = OrvelCore::ZOrder::windowDirectlyInFront(window, windows);
    const auto number = live.surface->windowNumber();
    if (front == number) {
        live.triedFor.reset();
        return false;
    }
    const bool isTried = live.isRaised || live.triedFor == front;
    if (live.request.isDrawnInFront && front && isTried && isAbove(number, window, windows))
        return false;
    live.triedFor = front;
    live.surface->order(window);
    return true;
}

void CoverController::replaceAll() {
    for (const auto& [window, live] : live_) live.surface->place(live.request.rect);
}

void CoverController::removeAll() {
    for (const auto& [window, live] : live_) live.surface->remove();
    live_.clear();
}

}  // namespace OrvelCovers
