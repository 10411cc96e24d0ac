#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Linux/ProcessWatch.h"
#include "OrvelSystem/Qt/InstalledApps.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelSystem/X11/AppIdentity.h"
#include "OrvelSystem/X11/ClientWindows.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

/// The apps of an X11 session, identified by their windows.
class X11Workspace final : public Workspace {
  public:
    X11Workspace();

    std::vector<RunningApplication> runningApplications() override;
    std::optional<RunningApplication> application(std::int64_t pid) override;
    std::optional<RunningApplication> frontmostApplication() override;
    std::shared_ptr<const Picture> icon(std::int64_t pid) override;
    std::shared_ptr<const Picture> icon(std::string_view bundleID) override;
    std::vector<InstalledApplication> installedApplications() override;
    std::optional<std::string> nameOfInstalled(std::string_view bundleID) override;
    bool isActive(std::int64_t pid) override;
    void activate(std::int64_t pid) override;
    void hide(std::int64_t pid) override;
    void terminate(std::int64_t pid) override;
    OrvelCore::Subscription observe(Events events) override;

  private:
    /// A process that has had a window, or that a caller has asked about.
    struct App {
        std::unique_ptr<ProcessWatch> process;
        // Determined on first use, and again once the process has a window, which provides more
        // data.
        std::optional<AppIdentity> identity;
        xcb_window_t identifiedBy = 0;  // 0 if identified without a window
        xcb_window_t lastActive = 0;
        std::vector<xcb_window_t> hidden;  // minimised by `hide`
    };

    void update();
    std::vector<std::int64_t> forgetEnded();
    App* adopt(std::int64_t pid);
    RunningApplication describe(std::int64_t pid, App& app);
    void tell(const std::function<void(const Events&)>& call);

    // A process stays the app that it was, also while a package is being replaced.
    InstalledApps installed_;
    std::map<std::int64_t, App> apps_;
    std::set<std::int64_t> running_;  // processes with ordinary windows
    OrvelCore::WeakList<Events> observers_;
    ClientWindows clients_;
    OrvelCore::Subscription events_;
    OrvelCore::Subscription active_;
};

}  // namespace OrvelSystem
