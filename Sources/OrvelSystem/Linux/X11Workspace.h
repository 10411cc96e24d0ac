#pragma once

#include <QSocketNotifier>
#include <list>
#include <map>
#include <memory>
#include <vector>

#include "OrvelSystem/Linux/ActiveWindow.h"
#include "OrvelSystem/Linux/DesktopEntries.h"
#include "OrvelSystem/Linux/X11.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelSystem {

/// The apps of an X11 session, by what the window manager tells of their windows. Without one, by
/// the windows on the screen.
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
    std::shared_ptr<void> observe(Events events) override;

  private:
    /// A process that has, or had, a window. The descriptor keeps its number from being taken for
    /// another process's, and tells of its end.
    struct App {
        std::optional<RunningApplication> identity;  // found out when it is first asked for
        int process = -1;                            // a pidfd
        std::unique_ptr<QSocketNotifier> end;
        xcb_window_t lastActive = 0;
    };
    struct Client {
        xcb_window_t window = 0;
        std::int64_t pid = 0;
        bool isOrdinary = true;
        bool isIconic = false;
    };

    bool isManaged() const;
    void handle(const xcb_generic_event_t& event);
    void readClients();
    std::vector<xcb_window_t> clientWindows() const;
    Client describe(xcb_window_t window) const;
    bool isIconic(xcb_window_t window) const;
    App* adopt(std::int64_t pid);
    void ended(std::int64_t pid);
    const RunningApplication& identify(std::int64_t pid, App& app);
    const std::vector<DesktopEntry>& entries();
    const DesktopEntry* entryOf(std::string_view bundleID);
    std::vector<xcb_window_t> windowsOf(std::int64_t pid) const;
    void tell(const std::function<void(const Events&)>& call);

    std::vector<Client> clients_;  // in the order in which they were opened
    std::map<std::int64_t, App> apps_;
    std::optional<std::vector<DesktopEntry>> entries_;
    double entriesRead_ = 0;
    std::map<std::string, std::shared_ptr<const Picture>, std::less<>> icons_;
    std::list<std::weak_ptr<Events>> observers_;
    X11::Subscription events_;
    std::shared_ptr<void> active_;
};

}  // namespace OrvelSystem
