#pragma once

#include <set>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/TriggerSettings.h"

namespace OrvelCore::HotCorner {

/// Seconds for which the pointer must stay, so that a fly-by fires nothing.
inline constexpr double dwell = 0.25;

/// The outermost pixel of that corner of `display`, both in window-server coordinates.
Rect rect(TriggerSettings::Corner corner, const Rect& display);

/// The corners that macOS itself acts on, by the Dock's own settings.
std::set<TriggerSettings::Corner> cornersMacOSUses(const SettingsStore& dock);

}  // namespace OrvelCore::HotCorner
