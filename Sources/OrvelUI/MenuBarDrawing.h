#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelUI {

/// A drawing of the menu bar that shows where the program's icon is, or that there was no space for
/// it.
struct MenuBarDrawing {
    static constexpr std::string_view clock = "9:41";
    static constexpr OrvelCore::Size size{260, 64};  ///< Points.
    static constexpr double barHeight = 26;          ///< Points.

    /// Positions in points from the left end of the bar.
    struct Layout {
        double clock = 0;            ///< Where the clock's text begins.
        std::optional<double> icon;  ///< Where the program's icon begins; `nullopt` if hidden.
        std::vector<double> dots;    ///< The centres of the dots that stand for other icons.
    };

    bool hidden = false;

    std::string label() const;
    /// `width` is that of the bar, `clockWidth` that of the clock's text.
    Layout layout(double width, double clockWidth) const;
    bool operator==(const MenuBarDrawing&) const = default;
};

}  // namespace OrvelUI
