#include "OrvelSystem/Haptics.h"

namespace OrvelSystem {

// No trackpad that a desktop here knows of can be felt.
void Haptics::perform(OrvelCore::Haptic /*haptic*/) {}

}  // namespace OrvelSystem
