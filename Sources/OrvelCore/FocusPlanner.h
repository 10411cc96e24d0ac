#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelCore {

/// The position of one display's overlay in the stacking order.
struct FocusPlacement {
    /// Directly below that window, so that only this window remains clear.
    struct Below {
        WindowID window = 0;
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

/// Blurs everything except the window in use. Lists of windows are frontmost first; `ownPID` is
/// this program.
namespace FocusPlanner {

/// A window that is narrower or shorter than this is never the window in use. In window-server
/// units.
inline constexpr double minimumSide = 24;

/// The window in use: the topmost normal window of the frontmost app. If no app or this program
/// (its menu or Settings) is frontmost, the topmost normal window of any other app. `nullopt` if
/// there is none.
std::optional<WindowInfo> frontWindow(const std::vector<WindowInfo>& windows, std::int64_t ownPID,
                                      std::optional<std::int64_t> frontPID);

/// One placement per display, in the order of `displays`. The window in use remains clear on the
/// display that contains most of it, or on the earlier of two with equal parts. All other displays
/// are blurred completely.
std::vector<FocusPlacement> plan(const std::vector<WindowInfo>& windows,
                                 const std::vector<Rect>& displays, std::int64_t ownPID,
                                 std::optional<std::int64_t> frontPID);

/// Whether an overlay that must be in front of everything on `display` no longer is: a normal
/// window of another program is in front of it there, or `surface` is not in the list.
bool isOvertaken(WindowID surface, const Rect& display, const std::vector<WindowInfo>& windows,
                 std::int64_t ownPID);

/// The parts of `display` that the windows from the front up to and including `last` occupy, except
/// windows of this program. Empty if `last` is not in the list.
std::vector<Rect> takenInFront(WindowID last, const Rect& display,
                               const std::vector<WindowInfo>& windows, std::int64_t ownPID);

/// The parts of `display` that other programs' windows above the level of normal windows occupy,
/// such as docks.
std::vector<Rect> takenByHigherLevels(const Rect& display, const std::vector<WindowInfo>& windows,
                                      std::int64_t ownPID);

}  // namespace FocusPlanner

}  // namespace OrvelCore
