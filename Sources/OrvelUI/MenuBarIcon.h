#pragma once

#include <string_view>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/MenuRules.h"
#include "OrvelUI/Path.h"

namespace OrvelUI {

/// The glyph of the status item: drawn in one colour, which is that of the bar it stands in.
struct MenuBarIcon {
    static constexpr OrvelCore::Size size{18, 18};  ///< Points.
    static constexpr double lineWidth = 1.5;        ///< Points.
    static constexpr std::string_view accessibleDescription = OrvelCore::Brand::name;

    /// Stroked with `lineWidth`.
    Path outline;
    /// Filled; empty where nothing is.
    Path filling;

    static MenuBarIcon image(OrvelCore::MenuBarIconState state);
    bool operator==(const MenuBarIcon&) const = default;
};

}  // namespace OrvelUI
