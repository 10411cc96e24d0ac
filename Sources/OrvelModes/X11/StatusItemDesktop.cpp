#include "OrvelModes/X11/StatusItemDesktop.h"

#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/X11/Displays.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelModes {

using OrvelCore::Rect;
using OrvelSystem::X11;

namespace {

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

}  // namespace

StatusItemDesktop x11StatusItemDesktop() {
    return {.screens = OrvelSystem::Displays::frames,
            .workArea = workArea,
            .pointer = OrvelSystem::PointerState::location,
            .logical = OrvelSystem::QtScreens::logical};
}

}  // namespace OrvelModes
