#pragma once

#include <variant>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelUI {

/// An outline as a list of commands: what symbols and the island are made of, and what each
/// platform turns into its own path. y grows downwards.
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

    /// Of the control points of the cubic that comes closest to a quarter of a circle, in radii
    /// from its ends.
    static constexpr double circleHandle = 0.5523;

    Path& move(double x, double y);
    Path& line(double x, double y);
    Path& curve(OrvelCore::Point control1, OrvelCore::Point control2, OrvelCore::Point to);
    Path& close();
    /// Starts a new piece at `from` and follows the ellipse to `to`. Degrees clockwise from the
    /// positive x axis; `to` may lie on either side.
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
