#pragma once

#include <functional>
#include <memory>

/// The appearance that the user requests from programs. Main thread only.
namespace OrvelSystem::Appearance {

bool isDark();
bool increasesContrast();
bool reducesMotion();
bool reducesTransparency();

/// Calls `changed` after any of the values may have changed, until the token is destroyed.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

}  // namespace OrvelSystem::Appearance
