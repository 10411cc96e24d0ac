#pragma once

#include <map>
#include <memory>
#include <set>

#include "OrvelSystem/Linux/ProcessWatch.h"
#include "OrvelSystem/Qt/InstalledApps.h"
#include "OrvelSystem/Wayland/Sway.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelSystem {

/// The apps with windows on sway.
class SwayWorkspace final : public Workspace {
  public:
    explicit SwayWorkspace(std::shared_ptr<Sway> sway);

    std::vector<RunningApplication> runningApplications() override;
    std::optional<RunningApplication> application(std::int64_t pid) override;
    std::optional<RunningApplication> frontmostApplication() override;
    std::shared_ptr<const Picture> icon(std::int64_t pid) override;
    std::shared_ptr<const Picture> icon(std::string_view bundleID) override;
    std::vector<InstalledApplication> installedApplications() override { return installed_.all(); }
    std::optional<std::string> nameOfInstalled(std::string_view bundleID) override {
        return installed_.name(bundleID);
    }
    bool isActive(std::int64_t pid) override;
    void activate(std::int64_t pid) override;
    /// Does nothing: what hides windows here is a cover.
    void hide(std::int64_t) override {}
    void terminate(std::int64_t pid) override;
    [[nodiscard]] OrvelCore::Subscription observe(Events events) override;

  private:
    using Windows = std::vector<OrvelCore::SwayWindow>;

    RunningApplication describe(const OrvelCore::SwayWindow& window);
    void update(const Windows& windows);
    void tell(const std::function<void(const Events&)>& call) { observers_.forEach(call); }

    std::shared_ptr<Sway> sway_;
    InstalledApps installed_;
    std::map<std::int64_t, std::unique_ptr<ProcessWatch>> processes_;
    std::set<std::int64_t> running_;
    OrvelCore::WeakList<Events> observers_;
    OrvelCore::Subscription events_;
};

}  // namespace OrvelSystem
