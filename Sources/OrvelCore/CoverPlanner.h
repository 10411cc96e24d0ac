#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelCore {

enum class CoverKind { appLock, privateApp };

/// The plan for one cover.
struct CoverRequest {
    std::int64_t window = 0;
    std::int64_t pid = 0;
    CoverKind kind = CoverKind::appLock;
    /// What to blur, in window-server coordinates.
    Rect rect;
    /// `rect` is the whole of the displays that the window touches, since it moves.
    bool widened = false;
    /// The window's own layer; its cover is made at this very level.
    std::int64_t layer = 0;
    bool operator==(const CoverRequest&) const = default;
};

/// All that a plan depends on.
struct CoverInputs {
    /// Front-most first: the stacking order of the whole screen.
    std::vector<WindowInfo> windows;
    std::set<std::int64_t> lockedPIDs;
    std::set<std::int64_t> privatePIDs;
    /// The app in front; nothing when there is none, and then no private app counts as in use.
    std::optional<std::int64_t> activePID;
    /// Numbers of the windows that `MotionTracker` calls moving.
    std::set<std::int64_t> moving;
    std::vector<Rect> displays;
    /// The pointer while a peek is on.
    std::optional<Point> peek;
    /// This program, whose own panels are never covered.
    std::int64_t ownPID = 0;
};

/// Which windows need a cover now, and over which rectangle.
namespace CoverPlanner {

/// Layers whose windows are covered: `first` up to, but without, `end`.
inline constexpr std::int64_t firstCoveredLayer = 0;
inline constexpr std::int64_t endOfCoveredLayers = 20;
constexpr bool covers(std::int64_t layer) {
    return layer >= firstCoveredLayer && layer < endOfCoveredLayers;
}
/// Smaller windows, in either direction, are not covered.
inline constexpr double minimumSide = 24;
/// How far a cover at rest reaches over its window on every side.
inline constexpr double margin = 1;

/// In the order of `windows`, front-most first.
std::vector<CoverRequest> plan(const CoverInputs& inputs);
/// `rect` cut along the displays' edges, in their order; `rect` itself when it lies on none.
std::vector<Rect> pieces(const Rect& rect, const std::vector<Rect>& displays);
/// The smallest rectangle around all displays that `rect` touches, so that a window in motion
/// cannot leave its cover between two looks; `rect` grown by the margin when it touches none.
Rect displayCover(const Rect& rect, const std::vector<Rect>& displays);

}  // namespace CoverPlanner

}  // namespace OrvelCore
