#pragma once

#include <optional>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/NotchMetrics.h"
#include "OrvelUI/Palette.h"
#include "OrvelUI/Path.h"

namespace OrvelUI {

/// The geometry of the island, in points: a band as high as the notch with one ear on each side of
/// it, and the content below.
namespace IslandLayout {

using Notch = std::optional<NotchMetrics>;

inline constexpr double bottomRadius = 22;
inline constexpr double flare = 8;
inline constexpr double bandPadding = 18;
inline constexpr double contentPadding = 16;
inline constexpr double bodyTop = 10;      ///< Between the band and the avatar.
inline constexpr double fieldRadius = 17;  ///< Of the password field.
inline constexpr Palette::Shadow shadow{.opacity = 0.5, .radius = 34, .drop = 8};

double width(const Notch& notch);
double earWidth(const Notch& notch);
double bandHeight(const Notch& notch);
double height(const Notch& notch);
double collapsedWidth(const Notch& notch);

/// The size without content (progress 0), with it (1), and between; an overshoot beyond 1 is
/// allowed.
OrvelCore::Size size(const Notch& notch, double progress);

/// The opacity of the band and of the content below it. They fade in when the island is large
/// enough for them.
double bandOpacity(double progress);
double bodyOpacity(double progress);

/// The horizontal centre of the island on a display of this width, from the display's left edge.
double centerX(const Notch& notch, double displayWidth);

}  // namespace IslandLayout

/// The outline of the island: flat along the top edge of the display, with concave flares at its
/// upper corners and rounded lower corners.
struct IslandShape {
    double bottomRadius = IslandLayout::bottomRadius;
    double flare = IslandLayout::flare;

    /// A closed path; radius and flare are reduced if the rectangle is too small for them.
    Path path(const OrvelCore::Rect& rect) const;
};

}  // namespace OrvelUI
