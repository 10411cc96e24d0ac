#pragma once

#include <cstdint>
#include <string>

#include "OrvelCore/Shortcut.h"

namespace OrvelSystem {

/// The name of the shortcut's key as xkbcommon has it, such as "l" or "space". A letter is named by
/// the label, so that it follows the layout, any other key by its position in the default layout.
/// Empty if there is no name. `xKeycode` is the key code of that position.
std::string xkbKeyName(const OrvelCore::Shortcut& shortcut, std::uint32_t xKeycode);

}  // namespace OrvelSystem
