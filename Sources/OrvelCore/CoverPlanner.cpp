#include "OrvelCore/CoverPlanner.h"

namespace OrvelCore::CoverPlanner {

namespace {

// The frontmost window under the pointer, whichever app owns it: a window in front protects the
// windows behind it. Our own overlays are skipped, or no cover could ever be lifted.
std::optional<WindowID> peekedWindow(const CoverInputs& inputs) {
    if (!inputs.peek) return std::nullopt;
    for (const auto& window : inputs.windows) {
        if (window.ownerPID == inputs.ownPID || window.layer >= endOfCoveredLayers) continue;
        if (window.bounds.contains(*inputs.peek)) return window.number;
    }
    return std::nullopt;
}

Rect restingCover(const Rect& rect) {
    return rect.inset(-margin, -margin);
}

}  // namespace

std::vector<CoverRequest> plan(const CoverInputs& inputs) {
    const auto peeked = peekedWindow(inputs);
    const auto kindOf = [&](const WindowInfo& window) -> std::optional<CoverKind> {
        if (inputs.lockedPIDs.contains(window.ownerPID)) return CoverKind::appLock;
        if (!inputs.privatePIDs.contains(window.ownerPID)) return std::nullopt;
        const bool isInUse = inputs.activePID == window.ownerPID || peeked == window.number;
        return isInUse ? std::nullopt : std::optional(CoverKind::privateApp);
    };

    // No window of a locked or covered app, and none of an unknown owner, who may be such an app.
    // The desktop itself may be in front: some window managers keep the windows of other virtual
    // desktops mapped below it.
    const auto mayBeDrawn = [&](const WindowInfo& window) {
        return inputs.panelsAreDrawnInFront && window.layer <= lastDrawnLayer &&
               window.ownerPID != 0 && !kindOf(window);
    };

    std::vector<CoverRequest> requests;
    std::vector<WindowID> inFront;
    for (const auto& window : inputs.windows) {
        if (mayBeDrawn(window)) inFront.push_back(window.number);
        if (!covers(window.layer) || window.ownerPID == inputs.ownPID) continue;
        // These comparisons also reject a side that is NaN.
        const bool isLargeEnough =
            window.bounds.width >= minimumSide && window.bounds.height >= minimumSide;
        if (!isLargeEnough) continue;
        const auto kind = kindOf(window);
        if (!kind) continue;

        // Allocates at most once, and not at all if no window needs a cover.
        if (requests.empty()) requests.reserve(inputs.windows.size());
        const bool isMoving = inputs.moving.contains(window.number);
        requests.push_back(
            {window.number, window.ownerPID, *kind,
             isMoving ? displayCover(window.bounds, inputs.displays) : restingCover(window.bounds),
             isMoving, window.layer, inputs.panelsAreDrawnInFront, inFront});
    }
    return requests;
}

std::vector<Rect> pieces(const Rect& rect, const std::vector<Rect>& displays) {
    std::vector<Rect> found;
    for (const auto& display : displays) {
        if (const auto piece = rect.intersection(display)) found.push_back(*piece);
    }
    if (found.empty()) found.push_back(rect);
    return found;
}

Rect displayCover(const Rect& rect, const std::vector<Rect>& displays) {
    std::optional<Rect> touched;
    for (const auto& display : displays) {
        if (display.intersects(rect)) touched = touched ? touched->united(display) : display;
    }
    return touched.value_or(restingCover(rect));
}

}  // namespace OrvelCore::CoverPlanner
