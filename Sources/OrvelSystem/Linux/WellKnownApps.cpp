#include "OrvelSystem/Linux/WellKnownApps.h"

#include <algorithm>
#include <array>

namespace OrvelSystem {

namespace {

struct WellKnown {
    std::string_view bundleID;
    std::string_view entry;
};

// Identifiers that the program names itself, and the desktop entries that correspond to them on
// Linux: the apps that are offered to users first, and the parts of a desktop that are never
// locked. A program has a different entry in each packaging format.
constexpr std::array table = std::to_array<WellKnown>({
    {"com.apple.MobileSMS", "sm.puri.Chatty"},
    {"com.apple.mail", "thunderbird"},
    {"com.apple.mail", "org.mozilla.Thunderbird"},
    {"com.apple.mail", "org.mozilla.thunderbird"},
    {"com.apple.mail", "thunderbird_thunderbird"},
    {"com.tinyspeck.slackmacgap", "slack"},
    {"com.tinyspeck.slackmacgap", "com.slack.Slack"},
    {"com.tinyspeck.slackmacgap", "slack_slack"},
    {"net.whatsapp.WhatsApp", "whatsapp-for-linux"},
    {"net.whatsapp.WhatsApp", "com.github.eneshecan.WhatsAppForLinux"},
    {"net.whatsapp.WhatsApp", "com.rtosta.zapzap"},
    {"ru.keepcoder.Telegram", "org.telegram.desktop"},
    {"ru.keepcoder.Telegram", "telegramdesktop"},
    {"ru.keepcoder.Telegram", "telegram-desktop_telegram-desktop"},
    {"org.whispersystems.signal-desktop", "signal-desktop"},
    {"org.whispersystems.signal-desktop", "org.signal.Signal"},
    {"org.whispersystems.signal-desktop", "signal-desktop_signal-desktop"},
    {"com.hnc.Discord", "discord"},
    {"com.hnc.Discord", "com.discordapp.Discord"},
    {"com.hnc.Discord", "discord_discord"},
    {"com.microsoft.teams2", "teams-for-linux"},
    {"com.microsoft.teams2", "com.github.IsmaelMartinez.teams_for_linux"},
    {"com.microsoft.teams2", "teams-for-linux_teams-for-linux"},
    {"com.microsoft.Outlook", "prospect-mail"},
    {"com.microsoft.Outlook", "prospect-mail_prospect-mail"},
    {"com.apple.Notes", "org.gnome.Notes"},
    {"com.apple.loginwindow", "lightdm-gtk-greeter"},
    {"com.apple.dock", "plank"},
    {"com.apple.dock", "xfce4-panel"},
    {"com.apple.dock", "lxpanel"},
    {"com.apple.dock", "tint2"},
    {"com.apple.dock", "mate-panel"},
    {"com.apple.dock", "org.kde.plasmashell"},
    {"com.apple.dock", "plasmashell"},
    {"com.apple.dock", "org.gnome.Shell"},
    {"com.apple.dock", "gnome-shell"},
    {"com.apple.dock", "cinnamon"},
    {"com.apple.dock", "lxqt-panel"},
    {"com.apple.dock", "polybar"},
    {"com.apple.systemuiserver", "stalonetray"},
    {"com.apple.systemuiserver", "trayer"},
    {"com.apple.WindowManager", "xfdesktop"},
    {"com.apple.Spotlight", "rofi"},
    {"com.apple.Spotlight", "org.kde.krunner"},
    {"com.apple.Spotlight", "krunner"},
    {"com.apple.Spotlight", "albert"},
    {"com.apple.Spotlight", "ulauncher"},
    {"com.apple.Spotlight", "xfce4-appfinder"},
    {"com.apple.Spotlight", "lxqt-runner"},
    {"com.apple.Spotlight", "synapse"},
    {"com.apple.Spotlight", "gmrun"},
    {"com.apple.notificationcenterui", "xfce4-notifyd"},
});

}  // namespace

std::string bundleIDForEntry(std::string_view entryID) {
    const auto known = std::ranges::find(table, entryID, &WellKnown::entry);
    return std::string(known == table.end() ? entryID : known->bundleID);
}

std::vector<std::string> entriesForBundleID(std::string_view bundleID) {
    std::vector<std::string> entries;
    for (const auto& known : table) {
        if (known.bundleID == bundleID) entries.emplace_back(known.entry);
    }
    if (entries.empty()) entries.emplace_back(bundleID);
    return entries;
}

bool isWellKnownEntry(std::string_view entryID) {
    return std::ranges::find(table, entryID, &WellKnown::entry) != table.end();
}

}  // namespace OrvelSystem
