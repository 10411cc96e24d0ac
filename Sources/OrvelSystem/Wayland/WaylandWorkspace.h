#pragma once

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Qt/InstalledApps.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelSystem {

/// For a session that does not report which apps run. It knows only the installed apps.
class WaylandWorkspace final : public Workspace {
  public:
    std::vector<RunningApplication> runningApplications() override { return {}; }
    std::optional<RunningApplication> application(std::int64_t) override { return {}; }
    std::optional<RunningApplication> frontmostApplication() override { return {}; }
    std::shared_ptr<const Picture> icon(std::int64_t) override { return nullptr; }
    std::shared_ptr<const Picture> icon(std::string_view bundleID) override {
        return installed_.icon(bundleID);
    }
    std::vector<InstalledApplication> installedApplications() override { return installed_.all(); }
    std::optional<std::string> nameOfInstalled(std::string_view bundleID) override {
        return installed_.name(bundleID);
    }
    bool isActive(std::int64_t) override { return false; }
    void activate(std::int64_t) override {}
    void hide(std::int64_t) override {}
    void terminate(std::int64_t) override {}
    OrvelCore::Subscription observe(Events) override { return nullptr; }

  private:
    InstalledApps installed_;
};

}  // namespace OrvelSystem
