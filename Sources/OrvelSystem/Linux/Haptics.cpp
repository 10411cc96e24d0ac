#include "OrvelSystem/Haptics.h"

namespace OrvelSystem {

// Desktops on Linux provide no haptic feedback.
void Haptics::perform(OrvelCore::Haptic /*haptic*/) {}

}  // namespace OrvelSystem
