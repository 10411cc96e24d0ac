#pragma once

#include <memory>

#include <xcb/xcb.h>

#include "OrvelSystem/Picture.h"

namespace OrvelSystem {

/// The picture that a program hangs on its window, large enough for a card. Null without one.
std::shared_ptr<const Picture> windowIcon(xcb_window_t window);

}  // namespace OrvelSystem
