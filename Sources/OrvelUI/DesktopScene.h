#pragma once

#include <optional>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/Looks.h"
#include "OrvelUI/CardContent.h"
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

/// What covers the desktop of a picture.
struct SceneCover {
    OrvelCore::OverlayLook look;
    /// 0 to 1: `progress` is the strength of the cover, `card` the opacity of the lock's card.
    double progress = 1;
    double card = 0;
    bool showsClock = false;
    /// The card contains the word "Locked" and the fingerprint symbol.
    bool speaks = false;
};

/// The lock's card in a picture of a locked desktop, at the top edge of the scene. All lengths,
/// including the sizes of symbols and texts, are in units of the scene.
struct SceneCard {
    struct Mark {
        SymbolContent symbol;
        OrvelCore::Point centre;
    };
    struct Text {
        LabelContent label;
        OrvelCore::Rect rect;
    };

    /// Filled in order, below the marks and the text. The first one reaches above the scene.
    std::vector<DesktopScene::Shape> shapes;
    std::vector<Mark> marks;
    std::optional<Text> text;  ///< `nullopt` for none.

    static SceneCard of(const SceneCover& cover);
};

/// The sizes, in pixels, to which a picture of `size` pixels is smoothly scaled one after the other
/// to blur it by `radius` pixels. Each halving doubles the radius. Empty for no blur.
std::vector<OrvelCore::Size> blurSizes(const OrvelCore::Size& size, double radius);

/// The state of the looping picture of a desktop that locks, at `seconds` after its start.
struct LockingPicture {
    static constexpr double period = 5;  ///< Seconds of one loop.

    double blur = 1;  ///< Fraction of the lock's radius and tint, 0 to 1.
    double card = 1;  ///< Opacity of the card, 0 to 1.

    static LockingPicture at(double seconds);
    bool operator==(const LockingPicture&) const = default;
};

}  // namespace OrvelUI
