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

/// The choice of any number of installed apps. Main thread only.
class AppChooserModel {
  public:
    using App = OrvelSystem::InstalledApplication;

    static constexpr auto title = "Choose apps";
    static constexpr auto prompt = "Search";
    static constexpr auto nothingFound = "No app of that name.";

    /// `apps` is in the order in which the apps are shown.
    explicit AppChooserModel(std::vector<App> apps);

    /// The text to search for.
    OrvelCore::Observed<std::string> query;
    OrvelCore::Observed<std::set<std::string>> chosen;
    /// Called when an app first becomes visible. Returns null for an app without an icon.
    std::function<std::shared_ptr<const OrvelSystem::Picture>(const std::string& bundleID)> icon =
        [](const auto&) { return nullptr; };

    /// The apps whose names contain every word of the query, in any case.
    std::vector<App> matches() const;
    void toggle(const std::string& bundleID);
    /// The chosen apps in the order of the list, including those that the query hides.
    std::vector<std::string> result() const;

  private:
    struct Entry {
        App app;
        std::string key;  // the name in lower case
    };
    std::vector<Entry> entries_;
};

}  // namespace OrvelUI
