#pragma once

#include <algorithm>
#include <optional>

namespace OrvelCore {

/// A position, in window-server coordinates (see `Rect`) unless stated otherwise.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// In window-server units (see `Rect`).
struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle in window-server coordinates: the origin is at the top left of the primary display,
/// y increases downwards, and the units are those of the window server (points on macOS, pixels on
/// X11). Portable code uses only these coordinates; a platform with the origin at the bottom
/// converts them where it sets the frame of an overlay.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }

    /// The left and top edges belong to the rectangle, the right and bottom edges do not.
    bool contains(Point point) const {
        return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
    }
    bool intersects(const Rect& other) const {
        return !isEmpty() && !other.isEmpty() && x < other.maxX() && other.x < maxX() &&
               y < other.maxY() && other.y < maxY();
    }
    /// `nullopt` if the rectangles do not overlap or a side is NaN; a common edge does not count as
    /// an overlap.
    std::optional<Rect> intersection(const Rect& other) const {
        if (!intersects(other)) return std::nullopt;
        const double left = std::max(x, other.x);
        const double top = std::max(y, other.y);
        return Rect{left, top, std::min(maxX(), other.maxX()) - left,
                    std::min(maxY(), other.maxY()) - top};
    }
    /// The smallest rectangle that contains both.
    Rect united(const Rect& other) const {
        const double left = std::min(x, other.x);
        const double top = std::min(y, other.y);
        return {left, top, std::max(maxX(), other.maxX()) - left,
                std::max(maxY(), other.maxY()) - top};
    }
    /// Moves every side inwards, or outwards if the distance is negative. The result is empty if
    /// opposite sides meet or cross.
    Rect inset(double dx, double dy) const {
        return {x + dx, y + dy, width - 2 * dx, height - 2 * dy};
    }
    bool operator==(const Rect&) const = default;
};

/// Conversions to and from coordinates with the origin at the bottom left of the primary display
/// and y increasing upwards. `primaryHeight` is the height of that display.
namespace Geometry {

constexpr Rect cocoaRect(const Rect& fromCG, double primaryHeight) {
    return {fromCG.x, primaryHeight - (fromCG.y + fromCG.height), fromCG.width, fromCG.height};
}
constexpr Point cgPoint(Point fromCocoa, double primaryHeight) {
    return {fromCocoa.x, primaryHeight - fromCocoa.y};
}

}  // namespace Geometry

}  // namespace OrvelCore
