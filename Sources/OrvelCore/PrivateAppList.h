#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/SettingsStore.h"

namespace OrvelCore {

/// The apps that are covered while they are not in use. It contains neither this program nor
/// duplicates.
class PrivateAppList {
  public:
    /// Bundle identifiers of the apps that are suggested to the user.
    static constexpr std::array<std::string_view, 10> suggestions = {
        "com.apple.MobileSMS",   "com.apple.mail",        "com.tinyspeck.slackmacgap",
        "net.whatsapp.WhatsApp", "ru.keepcoder.Telegram", "org.whispersystems.signal-desktop",
        "com.hnc.Discord",       "com.microsoft.teams2",  "com.microsoft.Outlook",
        "com.apple.Notes",
    };

    bool enabled = true;

    PrivateAppList() = default;
    /// Ignores this program's identifier and duplicates.
    explicit PrivateAppList(const std::vector<std::string>& bundleIDs, bool isEnabled = true);

    static PrivateAppList load(const SettingsStore& store);
    void save(SettingsStore& store) const;

    /// In the order in which they were added.
    const std::vector<std::string>& bundleIDs() const { return bundleIDs_; }
    bool contains(std::string_view bundleID) const;
    /// Removes the identifier if it is in the list, else appends it. Ignores this program's own
    /// identifier.
    void toggle(std::string_view bundleID);

    bool operator==(const PrivateAppList&) const = default;

  private:
    std::vector<std::string> bundleIDs_;
};

}  // namespace OrvelCore
