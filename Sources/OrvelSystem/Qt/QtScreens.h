#pragma once

#include <QPoint>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem::QtScreens {

/// Converts a position on the X screen, in pixels, to Qt's coordinates for top-level windows. In
/// these, a screen's origin is in pixels, and distances from the origin are in scaled units.
QPoint logical(OrvelCore::Point pixels);
/// Device pixels per Qt unit at that position; 1 if there is no screen.
double scaleAt(OrvelCore::Point pixels);

}  // namespace OrvelSystem::QtScreens
