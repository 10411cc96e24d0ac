#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace OrvelCore {

enum class LaunchScreen { nothing, settings, onboarding };

/// Which window, if any, the program opens without being asked to.
namespace LaunchPolicy {

/// The window at launch. `iconShown` is the user's setting for the menu bar icon. `asLoginItem` is
/// true if the session, not the user, started the app. `resumingLock` is true if a lock from before
/// the launch continues.
LaunchScreen screen(bool iconShown, bool asLoginItem, bool resumingLock, bool onboardingDone,
                    const std::map<std::string, std::string, std::less<>>& environment);
bool showsSettings(bool iconShown, bool asLoginItem, bool resumingLock);
/// The window when the user starts the app while it is running.
LaunchScreen reopenScreen(bool onboardingOpen);
/// Whether to open Settings because the menu bar is too full to show the icon. `iconShown` is
/// `nullopt` if unknown.
bool showsSettingsWhenEvicted(std::optional<bool> iconShown, bool asLoginItem, bool locked);

}  // namespace LaunchPolicy

}  // namespace OrvelCore
