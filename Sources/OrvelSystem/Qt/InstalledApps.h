#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelSystem/Linux/DesktopEntries.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelSystem {

/// The installed apps, according to their desktop entries. Main thread only.
class InstalledApps {
  public:
    InstalledApps();

    /// As in `Workspace`.
    std::shared_ptr<const Picture> icon(std::string_view bundleID);
    std::vector<InstalledApplication> all();
    std::optional<std::string> name(std::string_view bundleID);
    const std::vector<DesktopEntry>& entries() { return entries_.all(); }

  private:
    const DesktopEntry* entryOf(std::string_view bundleID);

    DesktopEntries entries_;
    std::map<std::string, std::shared_ptr<const Picture>, std::less<>> icons_;
};

}  // namespace OrvelSystem
