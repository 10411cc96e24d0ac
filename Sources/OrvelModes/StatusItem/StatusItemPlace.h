#pragma once

#include "OrvelCore/Geometry.h"

/// Where the status item is, as far as that can be told when another program draws it.
namespace OrvelModes::StatusItemPlace {

/// The item's rectangle around a point on it. `workArea` is what bars leave of the desktop: beside
/// it the item is as high as its bar.
OrvelCore::Rect anchor(OrvelCore::Point at, const OrvelCore::Rect& screen,
                       const OrvelCore::Rect& workArea);

/// Where it most likely is before anybody has clicked it: at the end of the bar.
OrvelCore::Point guess(const OrvelCore::Rect& screen, const OrvelCore::Rect& workArea);

}  // namespace OrvelModes::StatusItemPlace
