#include "OrvelCore/FocusPlanner.h"

#include <algorithm>

namespace OrvelCore::FocusPlanner {

namespace {

double overlap(const Rect& display, const Rect& bounds) {
    const auto shared = display.intersection(bounds);
    return shared ? shared->width * shared->height : 0;
}

// The display that contains most of the window; `nullopt` if the window is outside all displays.
std::optional<Rect> homeDisplay(const WindowInfo& window, const std::vector<Rect>& displays) {
    std::optional<Rect> home;
    double most = 0;
    for (const auto& display : displays) {
        const double area = overlap(display, window.bounds);
        if (area > most) {
            home = display;
            most = area;
        }
    }
    return home;
}

}  // namespace

std::optional<WindowInfo> frontWindow(const std::vector<WindowInfo>& windows, std::int64_t ownPID,
                                      std::optional<std::int64_t> frontPID) {
    const bool anyApp = !frontPID || *frontPID == ownPID;
    const auto front = std::ranges::find_if(windows, [&](const WindowInfo& window) {
        return window.layer == 0 && window.ownerPID != ownPID &&
               (anyApp || window.ownerPID == *frontPID) && window.bounds.width >= minimumSide &&
               window.bounds.height >= minimumSide;
    });
    if (front == windows.end()) return std::nullopt;
    return *front;
}

std::vector<FocusPlacement> plan(const std::vector<WindowInfo>& windows,
                                 const std::vector<Rect>& displays, std::int64_t ownPID,
                                 std::optional<std::int64_t> frontPID) {
    const auto front = frontWindow(windows, ownPID, frontPID);
    const auto home = front ? homeDisplay(*front, displays) : std::nullopt;
    std::vector<FocusPlacement> placements;
    placements.reserve(displays.size());
    for (const auto& display : displays) {
        FocusPlacement placement{display, FocusPlacement::Front{}};
        if (display == home) placement.order = FocusPlacement::Below{front->number};
        placements.push_back(placement);
    }
    return placements;
}

bool isOvertaken(WindowID surface, const Rect& display, const std::vector<WindowInfo>& windows,
                 std::int64_t ownPID) {
    const auto ours = std::ranges::find(windows, surface, &WindowInfo::number);
    if (ours == windows.end()) return true;
    return std::any_of(windows.begin(), ours, [&](const WindowInfo& window) {
        return window.layer == 0 && window.ownerPID != ownPID && window.bounds.intersects(display);
    });
}

std::vector<Rect> takenInFront(WindowID last, const Rect& display,
                               const std::vector<WindowInfo>& windows, std::int64_t ownPID) {
    const auto end = std::ranges::find(windows, last, &WindowInfo::number);
    if (end == windows.end()) return {};
    std::vector<Rect> taken;
    for (auto window = windows.begin(); window <= end; ++window) {
        if (window->ownerPID == ownPID) continue;
        if (const auto part = display.intersection(window->bounds)) taken.push_back(*part);
    }
    return taken;
}

std::vector<Rect> takenByHigherLevels(const Rect& display, const std::vector<WindowInfo>& windows,
                                      std::int64_t ownPID) {
    std::vector<Rect> taken;
    for (const auto& window : windows) {
        if (window.layer <= 0 || window.ownerPID == ownPID) continue;
        if (const auto part = display.intersection(window.bounds)) taken.push_back(*part);
    }
    return taken;
}

}  // namespace OrvelCore::FocusPlanner
