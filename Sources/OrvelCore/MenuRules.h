#pragma once

#include "OrvelCore/Geometry.h"

/// What the status item shows, where its panel stands, and whether that takes the keyboard.
namespace OrvelCore {

/// Nothing is hidden; a part of the screen is covered or guarded; all of it is.
enum class MenuBarIconState { rest, partial, full };

namespace MenuBarIconRules {

MenuBarIconState state(bool macLocked, bool quickBlur, bool focusBlur, bool privateAppsActive,
                       int appLocks);

}  // namespace MenuBarIconRules

namespace MenuPanelPlacement {

/// Between the panel and the sides of the screen, in window-server units.
inline constexpr double margin = 8;

/// A rectangle of `size` centred under the status item's rectangle, `anchor`, and kept within the
/// sides of `screen`. It is not kept above the bottom edge; but where it does not fit under an item
/// that has enough room above it, as in a bar at the bottom, it stands on top of the item.
Rect frame(const Rect& anchor, Size size, const Rect& screen);

/// The height that `frame` finds on the screen for a panel of that item, on its roomier side and
/// short of the edge by the margin.
double room(const Rect& anchor, const Rect& screen);

}  // namespace MenuPanelPlacement

namespace MenuPanelKeyboard {

/// A click without assistive needs leaves the keyboard with the app in front.
constexpr bool takesKeyboard(bool voiceOver, bool fullKeyboardAccess, bool openedByMouse) {
    return voiceOver || fullKeyboardAccess || !openedByMouse;
}

}  // namespace MenuPanelKeyboard

}  // namespace OrvelCore
