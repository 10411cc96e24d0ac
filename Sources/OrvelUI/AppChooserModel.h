#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "OrvelCore/Observed.h"
#include "OrvelSystem/Picture.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelUI {

/// Choosing from all installed apps, any number of them. Main thread only.
class AppChooserModel {
  public:
    using App = OrvelSystem::InstalledApplication;

    static constexpr auto title = "Choose apps";
    static constexpr auto prompt = "Search";
    static constexpr auto nothingFound = "No app of that name.";

    /// `apps` in the order in which they are shown.
    explicit AppChooserModel(std::vector<App> apps);

    /// What is typed to search for.
    OrvelCore::Observed<std::string> query;
    OrvelCore::Observed<std::set<std::string>> chosen;
    /// Asked for an app once it comes into sight; null without an icon.
    std::function<std::shared_ptr<const OrvelSystem::Picture>(const std::string& bundleID)> icon =
        [](const auto&) { return nullptr; };

    /// Those whose name holds every word of the query, whatever the case.
    std::vector<App> matches() const;
    void toggle(const std::string& bundleID);
    /// The chosen ones in the order of the list, also those that the query hides.
    std::vector<std::string> result() const;

  private:
    struct Entry {
        App app;
        std::string key;  // the name in lower case
    };
    std::vector<Entry> entries_;
};

}  // namespace OrvelUI
