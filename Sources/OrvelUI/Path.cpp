#include "OrvelUI/Path.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace OrvelUI {

using OrvelCore::Point;

Path& Path::move(double x, double y) {
    commands_.emplace_back(Move{{x, y}});
    return *this;
}

Path& Path::line(double x, double y) {
    commands_.emplace_back(Line{{x, y}});
    return *this;
}

Path& Path::curve(Point control1, Point control2, Point to) {
    commands_.emplace_back(Curve{control1, control2, to});
    return *this;
}

Path& Path::close() {
    commands_.emplace_back(Close{});
    return *this;
}

void Path::arcPieces(Point centre, double radiusX, double radiusY, double from, double to) {
    // A cubic approximates at most a quarter of a circle well.
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(to - from) / 90)));
    const double step = (to - from) / pieces * std::numbers::pi / 180;
    const double handle = 4.0 / 3 * std::tan(step / 4);
    double angle = from * std::numbers::pi / 180;
    for (int i = 0; i < pieces; ++i) {
        const double end = angle + step;
        const auto at = [&](double a, double tangent) {
            return Point{centre.x + radiusX * (std::cos(a) - tangent * std::sin(a)),
                         centre.y + radiusY * (std::sin(a) + tangent * std::cos(a))};
        };
        curve(at(angle, handle), at(end, -handle), at(end, 0));
        angle = end;
    }
}

Path& Path::arc(Point centre, double radiusX, double radiusY, double from, double to) {
    const double angle = from * std::numbers::pi / 180;
    move(centre.x + radiusX * std::cos(angle), centre.y + radiusY * std::sin(angle));
    arcPieces(centre, radiusX, radiusY, from, to);
    return *this;
}

Path& Path::ellipse(Point centre, double radiusX, double radiusY) {
    return arc(centre, radiusX, radiusY, 0, 360).close();
}

Path& Path::roundedRect(const OrvelCore::Rect& rect, double radius) {
    const double r = std::min({radius, rect.width / 2, rect.height / 2});
    move(rect.x + r, rect.y);
    line(rect.maxX() - r, rect.y);
    arcPieces({rect.maxX() - r, rect.y + r}, r, r, -90, 0);
    line(rect.maxX(), rect.maxY() - r);
    arcPieces({rect.maxX() - r, rect.maxY() - r}, r, r, 0, 90);
    line(rect.x + r, rect.maxY());
    arcPieces({rect.x + r, rect.maxY() - r}, r, r, 90, 180);
    line(rect.x, rect.y + r);
    arcPieces({rect.x + r, rect.y + r}, r, r, 180, 270);
    return close();
}

}  // namespace OrvelUI
