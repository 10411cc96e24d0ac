#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelCore {

enum class CoverKind { appLock, privateApp };

/// The plan for the cover of one window.
struct CoverRequest {
    WindowID window = 0;
    std::int64_t pid = 0;
    CoverKind kind = CoverKind::appLock;
    /// The area to blur, in window-server coordinates.
    Rect rect;
    /// Whether `rect` spans all displays that the window touches, because the window is moving.
    bool widened = false;
    /// The window's layer, which is also the level of its cover.
    std::int64_t layer = 0;
    /// Whether the cover is drawn in front of all windows: `CoverInputs::panelsAreDrawnInFront`.
    bool isDrawnInFront = false;
    /// Windows to draw onto the cover, frontmost first, wherever they are. Empty unless
    /// `isDrawnInFront`.
    std::vector<WindowID> inFront;
    bool operator==(const CoverRequest&) const = default;
};

/// Everything on which a plan depends.
struct CoverInputs {
    /// All windows on the screen, frontmost first.
    std::vector<WindowInfo> windows;
    std::set<std::int64_t> lockedPIDs;
    std::set<std::int64_t> privatePIDs;
    /// The frontmost app. If it is `nullopt`, no private app counts as in use.
    std::optional<std::int64_t> activePID;
    /// Numbers of the windows that `MotionTracker` reports as moving.
    std::set<WindowID> moving;
    std::vector<Rect> displays;
    /// The pointer's position while the user peeks; `nullopt` otherwise.
    std::optional<Point> peek;
    /// This program, whose own windows are never covered.
    std::int64_t ownPID = 0;
    /// Whether covers are drawn in front of all windows, whatever their place in the stack is.
    bool panelsAreDrawnInFront = false;
};

/// Decides which windows need a cover, and the area of each cover.
namespace CoverPlanner {

/// Windows on layers from `firstCoveredLayer` up to, but not including, `endOfCoveredLayers` are
/// covered.
inline constexpr std::int64_t firstCoveredLayer = 0;
inline constexpr std::int64_t endOfCoveredLayers = 20;
constexpr bool covers(std::int64_t layer) {
    return layer >= firstCoveredLayer && layer < endOfCoveredLayers;
}
/// The layer of docks, the highest that is drawn onto a cover: menus are drawn in front of covers.
inline constexpr std::int64_t lastDrawnLayer = endOfCoveredLayers;
/// Windows that are narrower or shorter than this are not covered. In window-server units.
inline constexpr double minimumSide = 24;
/// The distance by which the cover of a window at rest extends beyond the window on every side. In
/// window-server units.
inline constexpr double margin = 1;

/// In the order of `windows`, frontmost first.
std::vector<CoverRequest> plan(const CoverInputs& inputs);
/// Splits `rect` along the edges of the displays, in their order. Returns `rect` itself if it
/// touches no display.
std::vector<Rect> pieces(const Rect& rect, const std::vector<Rect>& displays);
/// The smallest rectangle around all displays that `rect` touches, so that a moving window cannot
/// leave its cover between two samples. If `rect` touches no display, returns `rect` extended by
/// `margin`.
Rect displayCover(const Rect& rect, const std::vector<Rect>& displays);

}  // namespace CoverPlanner

}  // namespace OrvelCore
