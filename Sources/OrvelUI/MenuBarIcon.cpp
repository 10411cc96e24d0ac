#include "OrvelUI/MenuBarIcon.h"

#include <utility>

namespace OrvelUI {

namespace {

constexpr OrvelCore::Rect frame{2.5, 3.5, 13, 11};
constexpr double radius = 2.5;

/// The left half of the frame, clipped to its rounded corners.
Path leftHalf() {
    const double middle = frame.x + frame.width / 2;
    const double handle = radius * (1 - Path::circleHandle);
    const auto [x, y] = std::pair(frame.x, frame.y);
    Path path;
    path.move(middle, y).line(x + radius, y);
    path.curve({x + handle, y}, {x, y + handle}, {x, y + radius});
    path.line(x, frame.maxY() - radius);
    path.curve({x, frame.maxY() - handle}, {x + handle, frame.maxY()}, {x + radius, frame.maxY()});
    return path.line(middle, frame.maxY()).close();
}

}  // namespace

MenuBarIcon MenuBarIcon::image(OrvelCore::MenuBarIconState state) {
    MenuBarIcon icon;
    icon.outline.roundedRect(frame, radius);
    if (state == OrvelCore::MenuBarIconState::full) icon.filling = icon.outline;
    if (state == OrvelCore::MenuBarIconState::partial) icon.filling = leftHalf();
    return icon;
}

}  // namespace OrvelUI
