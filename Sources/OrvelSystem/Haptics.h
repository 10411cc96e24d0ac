#pragma once

#include "OrvelCore/Sound.h"

namespace OrvelSystem {

/// What the fingers on a trackpad feel.
struct Haptics {
    /// Nothing where there is no such hardware.
    static void perform(OrvelCore::Haptic haptic);
};

}  // namespace OrvelSystem
