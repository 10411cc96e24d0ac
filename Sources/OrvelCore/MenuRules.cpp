#include "OrvelCore/MenuRules.h"

#include <algorithm>
#include <cmath>

namespace OrvelCore {

MenuBarIconState MenuBarIconRules::state(bool macLocked, bool quickBlur, bool focusBlur,
                                         bool privateAppsActive, int appLocks) {
    if (macLocked || quickBlur) return MenuBarIconState::full;
    if (focusBlur || privateAppsActive || appLocks >= 1) return MenuBarIconState::partial;
    return MenuBarIconState::rest;
}

Rect MenuPanelPlacement::frame(const Rect& anchor, Size size, const Rect& screen) {
    const double centred = anchor.x + anchor.width / 2 - size.width / 2;
    // On a screen that is too narrow for the panel, the margin at the right edge takes precedence.
    const double x =
        std::min(std::max(centred, screen.x + margin), screen.maxX() - margin - size.width);
    const bool fitsUnder = anchor.maxY() + size.height <= screen.maxY();
    const bool fitsAbove = anchor.y - size.height >= screen.y;
    const double y = !fitsUnder && fitsAbove ? anchor.y - size.height : anchor.maxY();
    return {std::round(x), y, size.width, size.height};
}

double MenuPanelPlacement::room(const Rect& anchor, const Rect& screen) {
    return std::max(screen.maxY() - anchor.maxY(), anchor.y - screen.y) - margin;
}

}  // namespace OrvelCore
