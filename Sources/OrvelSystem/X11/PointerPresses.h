#pragma once

#include <functional>
#include <memory>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem::PointerPresses {

/// Hears of each press of the left or right button anywhere on the screen, also while another
/// program grabs the pointer, until the token is dropped. Takes nothing away from whoever was
/// pressed on. Window-server coordinates. Never called on a server without the input extension.
/// Main thread only.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void(OrvelCore::Point)> pressed);

}  // namespace OrvelSystem::PointerPresses
