#pragma once

#include <functional>
#include <memory>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WeakList.h"

namespace OrvelSystem::PointerPresses {

/// Calls `pressed` with the position, in window-server coordinates, for each press of the left or
/// right button anywhere on the screen, even while another program has grabbed the pointer, until
/// the token is destroyed. The press still reaches the window under the pointer. Returns null on a
/// server without the XInput extension. Main thread only.
[[nodiscard]] OrvelCore::Subscription observe(std::function<void(OrvelCore::Point)> pressed);

}  // namespace OrvelSystem::PointerPresses
