#pragma once

#include <algorithm>
#include <optional>

namespace OrvelCore {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle in window-server coordinates: origin at the top left of the primary display,
/// y growing downwards, in the window server's own units (points on macOS, pixels on X11).
/// Portable code knows no other coordinates; a platform that counts from the bottom converts
/// where it sets a panel's frame.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }

    /// The left and top edges belong to the rectangle, the right and bottom ones do not.
    bool contains(Point point) const {
        return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
    }
    bool intersects(const Rect& other) const {
        return !isEmpty() && !other.isEmpty() && x < other.maxX() && other.x < maxX() &&
               y < other.maxY() && other.y < maxY();
    }
    /// Nothing where the two do not overlap or a side is not a number; an edge in common is no
    /// overlap.
    std::optional<Rect> intersection(const Rect& other) const {
        if (!intersects(other)) return std::nullopt;
        const double left = std::max(x, other.x);
        const double top = std::max(y, other.y);
        return Rect{left, top, std::min(maxX(), other.maxX()) - left,
                    std::min(maxY(), other.maxY()) - top};
    }
    /// The smallest rectangle around both.
    Rect united(const Rect& other) const {
        const double left = std::min(x, other.x);
        const double top = std::min(y, other.y);
        return {left, top, std::max(maxX(), other.maxX()) - left,
                std::max(maxY(), other.maxY()) - top};
    }
    /// Every side moved inwards, or outwards by a negative distance. Empty once opposite sides
    /// have met.
    Rect inset(double dx, double dy) const {
        return {x + dx, y + dy, width - 2 * dx, height - 2 * dy};
    }
    bool operator==(const Rect&) const = default;
};

/// To and from coordinates with the origin at the bottom left of the primary display and y growing
/// upwards, for a platform that places its panels so. `primaryHeight` is that display's height.
namespace Geometry {

constexpr Rect cocoaRect(const Rect& fromCG, double primaryHeight) {
    return {fromCG.x, primaryHeight - (fromCG.y + fromCG.height), fromCG.width, fromCG.height};
}
constexpr Point cgPoint(Point fromCocoa, double primaryHeight) {
    return {fromCocoa.x, primaryHeight - fromCocoa.y};
}

}  // namespace Geometry

}  // namespace OrvelCore
