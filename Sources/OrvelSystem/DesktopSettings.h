#pragma once

#include <string>

/// Opens URLs and settings pages with the desktop's own programs. The functions return at once, and
/// do nothing if no suitable program is found. Main thread only.
namespace OrvelSystem::DesktopSettings {

/// Opens the URL with the user's default program for its scheme.
void openURL(const std::string& url);
/// Opens the desktop's notification settings.
void openNotificationSettings();

}  // namespace OrvelSystem::DesktopSettings
