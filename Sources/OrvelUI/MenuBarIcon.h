#pragma once

#include <string_view>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/MenuRules.h"
#include "OrvelUI/Path.h"

namespace OrvelUI {

/// The glyph of the status item, drawn in one colour, that of the bar it is in.
struct MenuBarIcon {
    static constexpr OrvelCore::Size size{18, 18};  ///< Points.
    static constexpr double lineWidth = 1.5;        ///< Points.
    static constexpr std::string_view accessibleDescription = OrvelCore::Brand::name;

    /// Stroked with `lineWidth`.
    Path outline;
    /// Filled; may be empty.
    Path filling;

    static MenuBarIcon image(OrvelCore::MenuBarIconState state);
    bool operator==(const MenuBarIcon&) const = default;
};

}  // namespace OrvelUI
