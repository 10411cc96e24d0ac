#include "OrvelSystem/DesktopSettings.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "OrvelSystem/Linux/Spawn.h"

namespace OrvelSystem::DesktopSettings {

namespace {

struct Settings {
    /// An entry of `XDG_CURRENT_DESKTOP`.
    std::string_view desktop;
    std::vector<std::string> command;
};

std::vector<Settings> notificationSettings() {
    return {{"GNOME", {"gnome-control-center", "notifications"}},
            {"KDE", {"systemsettings", "kcm_notifications"}},
            {"KDE", {"systemsettings5", "kcm_notifications"}},
            {"XFCE", {"xfce4-notifyd-config"}},
            {"X-Cinnamon", {"cinnamon-settings", "notifications"}},
            {"MATE", {"mate-notification-properties"}},
            {"LXQt", {"lxqt-config-notificationd"}}};
}

}  // namespace

void openURL(const std::string& url) {
    (void)spawnDetached({"xdg-open", url});
}

void openNotificationSettings() {
    const char* const named = std::getenv("XDG_CURRENT_DESKTOP");
    const std::string_view desktop = named != nullptr ? named : "";
    auto candidates = notificationSettings();
    // On any other desktop, use the first of these programs that is installed.
    std::ranges::stable_partition(candidates, [desktop](const Settings& settings) {
        return desktop.find(settings.desktop) != std::string_view::npos;
    });
    for (const auto& [name, command] : candidates)
        if (spawnDetached(command)) return;
}

}  // namespace OrvelSystem::DesktopSettings
