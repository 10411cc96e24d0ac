#pragma once

#include <set>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/TriggerSettings.h"

namespace OrvelCore::HotCorner {

/// In seconds. The pointer must stay in the corner for this long, so that passing through it
/// triggers nothing.
inline constexpr double dwell = 0.25;

/// The outermost pixel of that corner of `display`. Both rectangles are in window-server
/// coordinates.
Rect rect(TriggerSettings::Corner corner, const Rect& display);

/// The corners to which macOS itself assigns an action, according to the Dock's settings.
std::set<TriggerSettings::Corner> cornersMacOSUses(const SettingsStore& dock);

}  // namespace OrvelCore::HotCorner
