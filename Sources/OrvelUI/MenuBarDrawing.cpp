#include "OrvelUI/MenuBarDrawing.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelUI {

std::string MenuBarDrawing::label() const {
    return fmt::format(hidden ? fmt::runtime("The menu bar, with no room for the {} icon")
                              : fmt::runtime("The menu bar, with the {} icon"),
                       OrvelCore::Brand::name);
}

MenuBarDrawing::Layout MenuBarDrawing::layout(double width, double clockWidth) const {
    constexpr double step = 26;
    Layout layout{.clock = width - 12 - clockWidth};
    double x = layout.clock - step;
    if (!hidden) {
        layout.icon = x;
        x -= step;
    }
    // If the icon is hidden, the neighbouring icons fill the bar up to its edge.
    const double last = hidden ? 0 : x - 2 * step;
    for (; x > last; x -= step) layout.dots.push_back(x + 9);
    return layout;
}

}  // namespace OrvelUI
