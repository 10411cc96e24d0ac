#pragma once

#include <memory>
#include <string>

#include <xcb/xcb.h>

#include "OrvelSystem/Picture.h"

/// Icons of apps, large enough for a card. The functions return null if there is no icon.
namespace OrvelSystem::AppIcons {

/// `name` is a name in the icon theme or an absolute path.
std::shared_ptr<const Picture> named(const std::string& name);
/// The icon that the program has attached to its window.
std::shared_ptr<const Picture> ofWindow(xcb_window_t window);

}  // namespace OrvelSystem::AppIcons
