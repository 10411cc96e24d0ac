#pragma once

#include <variant>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelUI {

/// An outline as a list of commands, which each platform converts to its own path type. Symbols and
/// the island consist of these. y grows downwards.
class Path {
  public:
    struct Move {
        OrvelCore::Point to;
        bool operator==(const Move&) const = default;
    };
    struct Line {
        OrvelCore::Point to;
        bool operator==(const Line&) const = default;
    };
    struct Curve {
        OrvelCore::Point control1;
        OrvelCore::Point control2;
        OrvelCore::Point to;
        bool operator==(const Curve&) const = default;
    };
    struct Close {
        bool operator==(const Close&) const = default;
    };
    using Command = std::variant<Move, Line, Curve, Close>;

    /// The distance of the control points from the end points, in radii, of the cubic that best
    /// approximates a quarter of a circle.
    static constexpr double circleHandle = 0.5523;

    Path& move(double x, double y);
    Path& line(double x, double y);
    Path& curve(OrvelCore::Point control1, OrvelCore::Point control2, OrvelCore::Point to);
    Path& close();
    /// Starts a new subpath at `from` and follows the ellipse to `to`. The angles are in degrees
    /// clockwise from the positive x axis; `to` may be less than `from`.
    Path& arc(OrvelCore::Point centre, double radiusX, double radiusY, double from, double to);
    Path& ellipse(OrvelCore::Point centre, double radiusX, double radiusY);
    Path& roundedRect(const OrvelCore::Rect& rect, double radius);

    const std::vector<Command>& commands() const { return commands_; }
    bool operator==(const Path&) const = default;

  private:
    void arcPieces(OrvelCore::Point centre, double radiusX, double radiusY, double from, double to);

    std::vector<Command> commands_;
};

}  // namespace OrvelUI
