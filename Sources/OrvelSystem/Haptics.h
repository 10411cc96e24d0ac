#pragma once

#include "OrvelCore/Sound.h"

namespace OrvelSystem {

/// Haptic feedback of the trackpad.
struct Haptics {
    /// Does nothing if there is no such hardware.
    static void perform(OrvelCore::Haptic haptic);
};

}  // namespace OrvelSystem
