#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelCore {

/// Where the overlay of one display stands.
struct FocusPlacement {
    /// Directly below that window, so that it alone stays clear.
    struct Below {
        std::int64_t window = 0;
        bool operator==(const Below&) const = default;
    };
    /// In front of all normal windows.
    struct Front {
        bool operator==(const Front&) const = default;
    };
    using Order = std::variant<Below, Front>;

    /// The display, in window-server coordinates.
    Rect display;
    Order order = Front{};
    bool operator==(const FocusPlacement&) const = default;
};

/// Blurs everything but the window in use. Lists of windows run front-most first; `ownPID` is this
/// program.
namespace FocusPlanner {

/// A smaller window, in either direction, is never the one in use.
inline constexpr double minimumSide = 24;

/// The window in use: the top normal window of the app in front. While no app or this program is
/// in front (its menu, its Settings), that of any other app. Nothing when there is none.
std::optional<WindowInfo> frontWindow(const std::vector<WindowInfo>& windows, std::int64_t ownPID,
                                      std::optional<std::int64_t> frontPID);

/// One placement per display, in their order. The window in use stays clear on the display that
/// holds most of it, the earlier of two equal ones; every other display is blurred whole.
std::vector<FocusPlacement> plan(const std::vector<WindowInfo>& windows,
                                 const std::vector<Rect>& displays, std::int64_t ownPID,
                                 std::optional<std::int64_t> frontPID);

/// Whether an overlay that is to stand in front of everything on `display` no longer does: another
/// program's normal window came before it there, or `surface` is not in the list.
bool isOvertaken(std::int64_t surface, const Rect& display, const std::vector<WindowInfo>& windows,
                 std::int64_t ownPID);

/// What of `display` the windows down to `last` take up, that one included and this program's own
/// left out. Empty when `last` is not in the list.
std::vector<Rect> takenInFront(std::int64_t last, const Rect& display,
                               const std::vector<WindowInfo>& windows, std::int64_t ownPID);

}  // namespace FocusPlanner

}  // namespace OrvelCore
