#pragma once

#include <functional>
#include <memory>

#include "OrvelCore/WeakList.h"

/// The appearance that the user requests from programs. Main thread only.
namespace OrvelSystem::Appearance {

bool isDark();
bool increasesContrast();
bool reducesMotion();
bool reducesTransparency();

/// Calls `changed` after any of the values may have changed, until the token is destroyed.
[[nodiscard]] OrvelCore::Subscription observe(std::function<void()> changed);

}  // namespace OrvelSystem::Appearance
