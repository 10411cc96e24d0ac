#pragma once

#include <memory>
#include <string>

#include <xcb/xcb.h>

#include "OrvelSystem/Picture.h"

/// Pictures of apps, large enough for a card. Null without one.
namespace OrvelSystem::AppIcons {

/// By a name in the icon theme, or a path.
std::shared_ptr<const Picture> named(const std::string& name);
/// What the program itself hangs on its window.
std::shared_ptr<const Picture> ofWindow(xcb_window_t window);

}  // namespace OrvelSystem::AppIcons
