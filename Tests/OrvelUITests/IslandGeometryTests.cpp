#include "OrvelCore/Match.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/Symbols.h"

#include "Support/Prelude.h"

using namespace OrvelUI;
using OrvelCore::Point;
using OrvelCore::Rect;

namespace {

/// Returns the ends and control points of an outline, which lies inside their convex hull.
std::vector<Point> points(const Path& path) {
    std::vector<Point> result;
    for (const auto& command : path.commands())
        OrvelCore::match(
            command, [&](const Path::Move& move) { result.push_back(move.to); },
            [&](const Path::Line& line) { result.push_back(line.to); },
            [&](const Path::Curve& curve) {
                result.insert(result.end(), {curve.control1, curve.control2, curve.to});
            },
            [](const Path::Close&) {});
    return result;
}

}  // namespace

TEST(IslandShape, IsSymmetricAndStaysInsideItsRectangle) {
    for (const Rect& rect : {Rect{0, 0, 344, 136}, Rect{0, 0, 120, 30}, Rect{7, 0, 349.5, 138.2},
                             Rect{0, 0, 60, 12}, Rect{0, 0, 20, 30}, Rect{0, 0, 4, 3}}) {
        const Path path = IslandShape{}.path(rect);
        EXPECT_TRUE(std::holds_alternative<Path::Close>(path.commands().back()));
        const auto outline = points(path);
        EXPECT_EQ(outline.front(), (Point{rect.x, rect.y}));
        EXPECT_EQ(outline[1], (Point{rect.maxX(), rect.y}));
        EXPECT_EQ(outline.back(), outline.front());
        for (const Point& p : outline) {
            EXPECT_GE(p.x, rect.x - 1e-9);
            EXPECT_LE(p.x, rect.maxX() + 1e-9);
            EXPECT_GE(p.y, rect.y - 1e-9);
            EXPECT_LE(p.y, rect.maxY() + 1e-9);
            const double mirrored = 2 * rect.x + rect.width - p.x;
            EXPECT_TRUE(std::ranges::any_of(outline,
                                            [&](Point other) {
                                                return std::abs(other.x - mirrored) < 1e-6 &&
                                                       std::abs(other.y - p.y) < 1e-6;
                                            }))
                << p.x << ", " << p.y;
        }
    }
}

TEST(Symbols, AreDrawnInsideTheirBox) {
    for (const auto* name : {"lock.fill", "arrow.right", "touchid", "app.fill"}) {
        const Symbol& symbol = Symbol::named(name);
        ASSERT_FALSE(symbol.layers.empty()) << name;
        for (const auto& layer : symbol.layers)
            for (const Point& p : points(layer.path)) {
                EXPECT_GE(std::min(p.x, p.y), layer.stroke / 2) << name;
                EXPECT_LE(std::max(p.x, p.y), Symbol::box - layer.stroke / 2) << name;
            }
    }
    EXPECT_TRUE(Symbol::named("no such symbol").layers.empty());
}
