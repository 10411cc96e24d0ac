#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/SettingsStore.h"

namespace OrvelCore {

/// The apps that stay blurred while not in use. Never holds the program itself, nor an app twice.
class PrivateAppList {
  public:
    /// Bundle identifiers that the user is offered first.
    static constexpr std::array<std::string_view, 10> suggestions = {
        "com.apple.MobileSMS",   "com.apple.mail",        "com.tinyspeck.slackmacgap",
        "net.whatsapp.WhatsApp", "ru.keepcoder.Telegram", "org.whispersystems.signal-desktop",
        "com.hnc.Discord",       "com.microsoft.teams2",  "com.microsoft.Outlook",
        "com.apple.Notes",
    };

    bool enabled = true;

    PrivateAppList() = default;
    /// Drops what the list never holds; of equals, the first stays.
    explicit PrivateAppList(const std::vector<std::string>& bundleIDs, bool isEnabled = true);

    static PrivateAppList load(const SettingsStore& store);
    void save(SettingsStore& store) const;

    /// In the order in which they were added.
    const std::vector<std::string>& bundleIDs() const { return bundleIDs_; }
    bool contains(std::string_view bundleID) const;
    /// Removes or appends; nothing happens for the program's own identifier.
    void toggle(std::string_view bundleID);

    bool operator==(const PrivateAppList&) const = default;

  private:
    std::vector<std::string> bundleIDs_;
};

}  // namespace OrvelCore
