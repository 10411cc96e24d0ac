#pragma once

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
    bool operator==(const Rect&) const = default;
};

}  // namespace OrvelCore
