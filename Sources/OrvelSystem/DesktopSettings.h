#pragma once

#include <string>

/// What the desktop opens for the user. Returns at once; where nothing can be opened, nothing
/// happens. Main thread only.
namespace OrvelSystem::DesktopSettings {

/// With the program that the user has for URLs of that scheme.
void openURL(const std::string& url);
/// The settings of notifications.
void openNotificationSettings();

}  // namespace OrvelSystem::DesktopSettings
