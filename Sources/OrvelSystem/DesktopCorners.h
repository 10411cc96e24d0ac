#pragma once

#include <set>

#include "OrvelCore/TriggerSettings.h"

namespace OrvelSystem {

/// The corners of the screen with which the desktop itself does something.
struct DesktopCorners {
    /// Empty until it is known, and where the desktop does not say. Main thread only.
    static std::set<OrvelCore::TriggerSettings::Corner> used();
};

}  // namespace OrvelSystem
