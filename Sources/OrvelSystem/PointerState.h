#pragma once

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

/// The pointer at this moment.
struct PointerState {
    /// In window-server coordinates.
    static OrvelCore::Point location();
    /// Whether the primary button is down.
    static bool buttonDown();
};

}  // namespace OrvelSystem
