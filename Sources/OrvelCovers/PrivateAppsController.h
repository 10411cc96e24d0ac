#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "OrvelCore/PrivateAppList.h"
#include "OrvelCore/SettingsStore.h"
#include "OrvelCore/URLCommand.h"
#include "OrvelCovers/CoverLoop.h"
#include "OrvelCovers/RunningApp.h"

namespace OrvelCovers {

/// Turns the stored list of private apps into the processes that the loop covers. The list contains
/// identifiers, so an app is still private after it has been restarted. Main thread only.
class PrivateAppsController {
  public:
    using Running = std::function<std::vector<RunningApp>()>;

    PrivateAppsController(CoverLoop& loop, OrvelCore::SettingsStore& defaults, Running running);

    const OrvelCore::PrivateAppList& list() const { return list_; }

    /// Call when an app has started or ended.
    void refresh();
    void toggle(std::string_view bundleID);
    void setEnabled(bool enabled);
    void apply(OrvelCore::URLCommands::Switch change);

  private:
    void save();

    CoverLoop& loop_;
    OrvelCore::SettingsStore& defaults_;
    Running running_;
    OrvelCore::PrivateAppList list_;
};

}  // namespace OrvelCovers
