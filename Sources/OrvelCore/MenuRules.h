#pragma once

#include "OrvelCore/Geometry.h"

/// Rules for the icon of the status item, the position of its panel, and whether the panel takes
/// the keyboard.
namespace OrvelCore {

/// `rest`: nothing is hidden. `partial`: a part of the screen is covered or guarded. `full`: the
/// whole screen is covered.
enum class MenuBarIconState { rest, partial, full };

namespace MenuBarIconRules {

MenuBarIconState state(bool macLocked, bool quickBlur, bool focusBlur, bool privateAppsActive,
                       int appLocks);

}  // namespace MenuBarIconRules

namespace MenuPanelPlacement {

/// The minimum distance between the panel and the sides of the screen, in window-server units.
inline constexpr double margin = 8;

/// A rectangle of `size`, centred below the rectangle of the status item (`anchor`) and kept within
/// the left and right sides of `screen`. It may extend beyond the bottom of the screen. But if it
/// does not fit below the item and fits above it, as with a bar at the bottom, it is placed above
/// the item. All values are in window-server coordinates.
Rect frame(const Rect& anchor, Size size, const Rect& screen);

/// The maximum height of a panel that `frame` can place on the screen: the larger of the spaces
/// above and below the item, minus the margin.
double room(const Rect& anchor, const Rect& screen);

}  // namespace MenuPanelPlacement

namespace MenuPanelKeyboard {

/// After a mouse click, the keyboard stays with the frontmost app, unless an assistive setting is
/// on.
constexpr bool takesKeyboard(bool voiceOver, bool fullKeyboardAccess, bool openedByMouse) {
    return voiceOver || fullKeyboardAccess || !openedByMouse;
}

}  // namespace MenuPanelKeyboard

}  // namespace OrvelCore
