#pragma once

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

/// The current state of the pointer.
struct PointerState {
    /// In window-server coordinates.
    static OrvelCore::Point location();
    /// Whether the primary button is pressed.
    static bool buttonDown();
};

}  // namespace OrvelSystem
