#pragma once

#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/Palette.h"
#include "OrvelUI/Path.h"

namespace OrvelUI {

/// A small desktop with two windows, the background for pictures of locks and blurs.
struct DesktopScene {
    struct Shape {
        Path path;
        Palette::Ink ink;
        bool operator==(const Shape&) const = default;
    };

    static constexpr OrvelCore::Size size{160, 100};
    /// How many points of a real display one unit of the scene represents, so that blurs look as
    /// strong as they will be.
    static constexpr double pointsPerUnit = 9;

    /// The gradient of the background, from top to bottom.
    Palette::Value top = Palette::desktopTop;
    Palette::Value bottom = Palette::desktopBottom;
    /// Filled in order.
    std::vector<Shape> shapes;

    static const DesktopScene& standard();
    bool operator==(const DesktopScene&) const = default;
};

/// The state of the looping picture of a desktop that locks, at `seconds` after its start.
struct LockingPicture {
    static constexpr double period = 5;  ///< Seconds of one loop.

    double blur = 1;  ///< Fraction of the lock's radius and tint, 0 to 1.
    double card = 1;  ///< Opacity of the card, 0 to 1.

    static LockingPicture at(double seconds);
    bool operator==(const LockingPicture&) const = default;
};

}  // namespace OrvelUI
