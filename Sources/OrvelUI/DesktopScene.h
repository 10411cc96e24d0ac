#pragma once

#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/Palette.h"
#include "OrvelUI/Path.h"

namespace OrvelUI {

/// A little desktop with two windows on it: what the pictures of locks and blurs lie over.
struct DesktopScene {
    struct Shape {
        Path path;
        Palette::Ink ink;
        bool operator==(const Shape&) const = default;
    };

    static constexpr OrvelCore::Size size{160, 100};
    /// Points of a real display that one unit of the scene stands for, so that blurs look as strong
    /// as they will be.
    static constexpr double pointsPerUnit = 9;

    /// Of the background, from top to bottom.
    Palette::Value top = Palette::desktopTop;
    Palette::Value bottom = Palette::desktopBottom;
    /// Filled one after the other.
    std::vector<Shape> shapes;

    static const DesktopScene& standard();
    bool operator==(const DesktopScene&) const = default;
};

/// Where the picture of a locked desktop is in its round, at that many seconds from its start.
struct LockingPicture {
    static constexpr double period = 5;  ///< Seconds.

    double blur = 1;  ///< 0 to 1, of the lock's radius and tint.
    double card = 1;  ///< 0 to 1, opacity of the card.

    static LockingPicture at(double seconds);
    bool operator==(const LockingPicture&) const = default;
};

}  // namespace OrvelUI
