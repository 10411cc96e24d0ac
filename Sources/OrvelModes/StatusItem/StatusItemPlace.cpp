#include "OrvelModes/StatusItem/StatusItemPlace.h"

namespace OrvelModes::StatusItemPlace {

using OrvelCore::Point;
using OrvelCore::Rect;

namespace {

// Half the usual side length of an item.
constexpr double reach = 12;

}  // namespace

Rect anchor(Point at, const Rect& screen, const Rect& workArea) {
    const double left = at.x - reach;
    constexpr double width = 2 * reach;
    if (at.y < workArea.y) return {left, screen.y, width, workArea.y - screen.y};
    if (at.y >= workArea.maxY())
        return {left, workArea.maxY(), width, screen.maxY() - workArea.maxY()};
    return {left, at.y - reach, width, width};
}

Point guess(const Rect& screen, const Rect& workArea) {
    const double above = workArea.y - screen.y;
    const double below = screen.maxY() - workArea.maxY();
    const double x = screen.maxX() - 2 * reach;
    return below > above ? Point{x, screen.maxY() - below / 2} : Point{x, screen.y + above / 2};
}

}  // namespace OrvelModes::StatusItemPlace
