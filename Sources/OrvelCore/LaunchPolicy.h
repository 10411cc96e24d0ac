#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace OrvelCore {

enum class LaunchScreen { nothing, settings, onboarding };

/// Which window, if any, opens by itself.
namespace LaunchPolicy {

/// At launch. `iconShown` is the user's wish for a menu bar icon, `asLoginItem` whether the
/// session started the app and not the user.
LaunchScreen screen(bool iconShown, bool asLoginItem, bool resumingLock, bool onboardingDone,
                    const std::map<std::string, std::string, std::less<>>& environment);
bool showsSettings(bool iconShown, bool asLoginItem, bool resumingLock);
/// When the user starts the app that already runs.
LaunchScreen reopenScreen(bool onboardingOpen);
/// When the system has pushed the icon out of a full menu bar. `iconShown` is nothing while that
/// is not known.
bool showsSettingsWhenEvicted(std::optional<bool> iconShown, bool asLoginItem, bool locked);

}  // namespace LaunchPolicy

}  // namespace OrvelCore
