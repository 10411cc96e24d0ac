#include "OrvelModes/Linux/LiveStatusItem.h"

#include <QDBusConnection>
#include <algorithm>
#include <cmath>
#include <utility>

#include "OrvelModes/StatusItem/StatusItemPlace.h"
#include "OrvelSystem/Linux/StatusNotifierWatcher.h"
#include "OrvelSystem/StatusItemVisibility.h"

namespace OrvelModes {

using OrvelCore::Point;
using OrvelCore::Rect;
using OrvelSystem::StatusItemVisibility;
using OrvelSystem::StatusNotifierWatcher;

namespace {

const QString menuPath = QStringLiteral("/MenuBar");

// In pixels. A panel reports the pointer's position or the item's corner, so after a mouse click
// the pointer is at most the width of a thick bar away from that point.
constexpr double clickReach = 72;

}  // namespace

LiveStatusItem::LiveStatusItem(StatusMenuController& menu, StatusItemDesktop desktop)
    : desktop_(std::move(desktop)),
      contextMenu_(menu),
      menu_(menu, QDBusConnection::sessionBus(), menuPath),
      item_(QDBusConnection::sessionBus(), menuPath,
            {.activate = [this](int x, int y) { activated(x, y); },
             .contextMenu = [this](int x, int y) { contextMenu(x, y); }}),
      hosts_(StatusNotifierWatcher::shared().observe([this] { onShownChanged(); })) {}

std::optional<bool> LiveStatusItem::isShown() const {
    if (!item_.isVisible()) return false;
    return StatusItemVisibility::isShown(0);
}

void LiveStatusItem::activated(int x, int y) {
    const Point given{static_cast<double>(x), static_cast<double>(y)};
    const Point pointer = desktop_.pointer();
    const bool tellsPlace = desktop_.clicksTellPlace && given != Point{} && screenWith(given);
    const bool byMouse =
        !tellsPlace || std::hypot(given.x - pointer.x, given.y - pointer.y) <= clickReach;
    place_ = tellsPlace ? given : pointer;
    click(*place_, byMouse);
}

void LiveStatusItem::contextMenu(int x, int y) {
    const Point given{static_cast<double>(x), static_cast<double>(y)};
    const bool tellsPlace = desktop_.clicksTellPlace && given != Point{} && screenWith(given);
    contextMenu_.show(desktop_.logical(tellsPlace ? given : desktop_.pointer()));
}

void LiveStatusItem::performClick() {
    if (place_ && screenWith(*place_)) return click(*place_, true);
    const Rect screen = primaryScreen();
    click(StatusItemPlace::guess(screen, desktop_.workArea(screen)), true);
}

void LiveStatusItem::click(Point at, bool byMouse) {
    const Rect screen = screenWith(at).value_or(primaryScreen());
    onClick({.anchor = StatusItemPlace::anchor(at, screen, desktop_.workArea(screen)),
             .screen = screen,
             .byMouse = byMouse});
}

std::optional<Rect> LiveStatusItem::screenWith(Point at) const {
    for (const auto& screen : desktop_.screens()) {
        if (screen.contains(at)) return screen;
    }
    return std::nullopt;
}

Rect LiveStatusItem::primaryScreen() const {
    const auto screens = desktop_.screens();
    return screens.empty() ? Rect{} : screens.front();
}

}  // namespace OrvelModes
