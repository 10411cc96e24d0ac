#pragma once

#include <functional>
#include <memory>

/// How the user asks programs to look. Main thread only.
namespace OrvelSystem::Appearance {

bool isDark();
bool increasesContrast();
bool reducesMotion();
bool reducesTransparency();

/// Calls back after any of them may have changed, until the token is dropped.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

}  // namespace OrvelSystem::Appearance
