#pragma once

#include <set>

#include "OrvelCore/TriggerSettings.h"

namespace OrvelSystem {

/// The screen corners to which the desktop itself assigns an action.
struct DesktopCorners {
    /// Empty until the setting has been read, and if the desktop does not provide it. Main thread
    /// only.
    static std::set<OrvelCore::TriggerSettings::Corner> used();
};

}  // namespace OrvelSystem
