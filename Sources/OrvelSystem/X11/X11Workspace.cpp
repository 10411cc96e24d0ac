#include "OrvelSystem/X11/X11Workspace.h"

#include <algorithm>
#include <csignal>

#include <unistd.h>

#include "OrvelCore/Brand.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/WindowIcon.h"

namespace OrvelSystem {

X11Workspace::X11Workspace()
    : clients_([this] { update(); },
               [this] { tell([](const Events& events) { events.unhidden(); }); }) {
    auto& x11 = X11::shared();
    x11.selectOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    events_ = x11.onEvent(
        [this, shownDesktop = x11.atom("_NET_CURRENT_DESKTOP")](const xcb_generic_event_t& event) {
            if (event.response_type != XCB_PROPERTY_NOTIFY) return;
            const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (notify.window == X11::shared().root() && notify.atom == shownDesktop)
                tell([](const Events& events) { events.activeSpaceChanged(); });
        });
    active_ = ActiveWindow::shared().observe(
        [this](const ActiveWindow::App& app) {
            if (auto* const known = adopt(app.pid)) known->lastActive = app.window;
            tell([&](const Events& events) { events.activated(app.pid); });
        },
        [this] { tell([](const Events& events) { events.activated(0); }); });
    update();
}

void X11Workspace::update() {
    // Do this first, since a process ID may already have a new owner.
    const auto ended = forgetEnded();
    clients_.read();
    const auto before = std::exchange(running_, {});
    std::vector<std::int64_t> launched;
    for (const auto& client : clients_.all()) {
        if (!client.isOrdinary || running_.contains(client.pid) || adopt(client.pid) == nullptr)
            continue;
        running_.insert(client.pid);
        if (!before.contains(client.pid)) launched.push_back(client.pid);
    }
    for (const auto pid : ended) tell([pid](const Events& events) { events.terminated(pid); });
    for (const auto pid : launched) tell([pid](const Events& events) { events.launched(pid); });
}

std::vector<std::int64_t> X11Workspace::forgetEnded() {
    std::vector<std::int64_t> ended;
    for (const auto& [pid, app] : apps_) {
        if (app.process->hasEnded()) ended.push_back(pid);
    }
    for (const auto pid : ended) {
        apps_.erase(pid);
        running_.erase(pid);
        clients_.forget(pid);
    }
    return ended;
}

X11Workspace::App* X11Workspace::adopt(std::int64_t pid) {
    if (pid <= 0 || pid == getpid()) return nullptr;
    if (const auto known = apps_.find(pid); known != apps_.end()) return &known->second;
    auto process = ProcessWatch::open(pid, [this] { update(); });
    if (!process) return nullptr;
    auto& app = apps_[pid];
    app.process = std::move(process);
    return &app;
}

RunningApplication X11Workspace::describe(std::int64_t pid, App& app) {
    const auto windows = clients_.of(pid);
    const auto window = windows.empty() ? 0 : windows.front();
    if (!app.identity || (app.identifiedBy == 0 && window != 0)) {
        app.identity = identifyApp(installed_.entries(), appTraits(pid, window));
        app.identifiedBy = window;
    }
    return {pid, app.identity->bundleID, app.identity->name};
}

std::vector<RunningApplication> X11Workspace::runningApplications() {
    std::vector<RunningApplication> apps;
    for (const auto& client : clients_.all()) {
        const auto app = apps_.find(client.pid);
        if (!client.isOrdinary || app == apps_.end()) continue;
        if (std::ranges::find(apps, client.pid, &RunningApplication::pid) == apps.end())
            apps.push_back(describe(client.pid, app->second));
    }
    return apps;
}

std::optional<RunningApplication> X11Workspace::application(std::int64_t pid) {
    auto* const app = adopt(pid);
    return app ? std::optional(describe(pid, *app)) : std::nullopt;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
    const auto active = ActiveWindow::shared().current();
    if (!active || active->pid == 0) return std::nullopt;
    if (active->pid == getpid()) {
        return RunningApplication{active->pid, std::string(OrvelCore::Brand::bundleIdentifier),
                                  std::string(OrvelCore::Brand::name)};
    }
    return application(active->pid);
}

std::shared_ptr<const Picture> X11Workspace::icon(std::int64_t pid) {
    auto* const app = adopt(pid);
    if (app == nullptr) return nullptr;
    if (const auto bundleID = describe(pid, *app).bundleID) {
        if (auto picture = icon(*bundleID)) return picture;
    }
    for (const auto window : clients_.of(pid)) {
        if (auto picture = windowIcon(window)) return picture;
    }
    return nullptr;
}

std::shared_ptr<const Picture> X11Workspace::icon(std::string_view bundleID) {
    return installed_.icon(bundleID);
}

std::vector<InstalledApplication> X11Workspace::installedApplications() {
    return installed_.all();
}

std::optional<std::string> X11Workspace::nameOfInstalled(std::string_view bundleID) {
    return installed_.name(bundleID);
}

bool X11Workspace::isActive(std::int64_t pid) {
    const auto active = ActiveWindow::shared().current();
    return active && active->pid == pid;
}

void X11Workspace::activate(std::int64_t pid) {
    const auto found = apps_.find(pid);
    if (found == apps_.end()) return;
    auto& app = found->second;
    auto windows = clients_.of(pid);
    for (const auto window : std::exchange(app.hidden, {})) {
        // The window's number may belong to another program by now.
        if (processOf(window) != pid) continue;
        clients_.restore(window);
        if (std::ranges::find(windows, window) == windows.end()) windows.push_back(window);
    }
    if (windows.empty()) return;
    const bool isThere = std::ranges::find(windows, app.lastActive) != windows.end();
    ActiveWindow::shared().activate(isThere ? app.lastActive : windows.back());
}

void X11Workspace::hide(std::int64_t pid) {
    auto* const app = adopt(pid);
    if (app == nullptr) return;
    for (const auto& client : clients_.all()) {
        if (client.pid != pid || !client.isOrdinary || client.isMinimised) continue;
        clients_.minimise(client.window);
        app->hidden.push_back(client.window);
    }
}

void X11Workspace::terminate(std::int64_t pid) {
    const auto app = apps_.find(pid);
    if (app != apps_.end()) app->second.process->signal(SIGTERM);
}

OrvelCore::Subscription X11Workspace::observe(Events events) {
    return observers_.add(std::move(events));
}

void X11Workspace::tell(const std::function<void(const Events&)>& call) {
    observers_.forEach(call);
}

}  // namespace OrvelSystem
