#pragma once

#include "OrvelCore/Geometry.h"

/// Estimates the position of a status item that another program draws. Window-server coordinates.
namespace OrvelModes::StatusItemPlace {

/// The item's rectangle around the point `at` on it. `workArea` is the area of the desktop without
/// bars; outside it the item is as high as its bar.
OrvelCore::Rect anchor(OrvelCore::Point at, const OrvelCore::Rect& screen,
                       const OrvelCore::Rect& workArea);

/// The item's most likely position before its first click: at the end of the bar.
OrvelCore::Point guess(const OrvelCore::Rect& screen, const OrvelCore::Rect& workArea);

}  // namespace OrvelModes::StatusItemPlace
