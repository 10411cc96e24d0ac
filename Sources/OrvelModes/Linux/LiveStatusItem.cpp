#include "OrvelModes/Linux/LiveStatusItem.h"

#include <QDBusConnection>
#include <algorithm>
#include <cmath>
#include <vector>

#include "OrvelModes/StatusItem/StatusItemPlace.h"
#include "OrvelSystem/Linux/StatusNotifierWatcher.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/StatusItemVisibility.h"
#include "OrvelSystem/X11/Displays.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelModes {

using OrvelCore::Point;
using OrvelCore::Rect;
using OrvelSystem::Displays;
using OrvelSystem::PointerState;
using OrvelSystem::StatusItemVisibility;
using OrvelSystem::StatusNotifierWatcher;
using OrvelSystem::X11;

namespace {

const QString menuPath = QStringLiteral("/MenuBar");

// In pixels. A panel reports the pointer's position or the item's corner, so after a mouse click
// the pointer is at most the width of a thick bar away from that point.
constexpr double clickReach = 72;

/// The area of the desktop without bars; the whole screen if it is not known.
Rect workArea(const Rect& screen) {
    auto& x11 = X11::shared();
    const auto desktop = x11.property32(x11.root(), "_NET_CURRENT_DESKTOP", 1);
    const auto areas = x11.property32(x11.root(), "_NET_WORKAREA");
    const std::size_t first = desktop.empty() ? 0 : std::size_t{desktop.front()} * 4;
    if (areas.size() < first + 4) return screen;
    const auto at = [&](std::size_t i) {
        return static_cast<double>(static_cast<std::int32_t>(areas[first + i]));
    };
    return Rect{at(0), at(1), at(2), at(3)}.intersection(screen).value_or(screen);
}

std::optional<Rect> screenWith(Point at) {
    for (const auto& display : Displays::shared().list()) {
        if (display.frame.contains(at)) return display.frame;
    }
    return std::nullopt;
}

Rect primaryScreen() {
    const auto displays = Displays::shared().list();
    return displays.empty() ? Rect{} : displays.front().frame;
}

}  // namespace

LiveStatusItem::LiveStatusItem(StatusMenuController& menu)
    : contextMenu_(menu),
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
    const Point pointer = PointerState::location();
    const bool tellsPlace = given != Point{} && screenWith(given);
    const bool byMouse =
        !tellsPlace || std::hypot(given.x - pointer.x, given.y - pointer.y) <= clickReach;
    place_ = tellsPlace ? given : pointer;
    click(*place_, byMouse);
}

void LiveStatusItem::contextMenu(int x, int y) {
    const Point given{static_cast<double>(x), static_cast<double>(y)};
    const bool tellsPlace = given != Point{} && screenWith(given);
    contextMenu_.show(
        OrvelSystem::QtScreens::logical(tellsPlace ? given : PointerState::location()));
}

void LiveStatusItem::performClick() {
    if (place_ && screenWith(*place_)) return click(*place_, true);
    const Rect screen = primaryScreen();
    click(StatusItemPlace::guess(screen, workArea(screen)), true);
}

void LiveStatusItem::click(Point at, bool byMouse) {
    const Rect screen = screenWith(at).value_or(primaryScreen());
    onClick({.anchor = StatusItemPlace::anchor(at, screen, workArea(screen)),
             .screen = screen,
             .byMouse = byMouse});
}

}  // namespace OrvelModes
