#pragma once

#include <QPoint>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem::QtScreens {

/// A place on the X screen in Qt's coordinates for top-level windows: every screen keeps its origin
/// in pixels, and is measured in scaled units from there.
QPoint logical(OrvelCore::Point pixels);
/// Pixels per unit of Qt there.
double scaleAt(OrvelCore::Point pixels);

}  // namespace OrvelSystem::QtScreens
