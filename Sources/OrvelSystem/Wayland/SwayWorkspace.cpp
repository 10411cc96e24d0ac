#include "OrvelSystem/Wayland/SwayWorkspace.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include <fmt/format.h>
#include <unistd.h>

#include "OrvelSystem/X11/AppIdentity.h"

namespace OrvelSystem {

using OrvelCore::SwayWindow;

namespace {

AppTraits traitsOf(const SwayWindow& window) {
    auto traits = appTraits(window.pid, 0);
    traits.windowInstance = traits.windowClass = traits.toolkitID = window.appID;
    return traits;
}

}  // namespace

SwayWorkspace::SwayWorkspace(std::shared_ptr<Sway> sway) : sway_(std::move(sway)) {
    events_ =
        sway_->connection().observe([this](std::string_view kind, const nlohmann::json& event) {
            const auto change = event.value("change", std::string());
            if (kind == "workspace" && change == "focus")
                return tell([](const Events& events) { events.activeSpaceChanged(); });
            if (kind != "window" || change == "title" || change == "mark") return;
            const auto windows = sway_->windows();
            update(windows);
            tell([](const Events& events) { events.unhidden(); });
            if (change != "focus") return;
            const auto focused = std::ranges::find(windows, true, &SwayWindow::isFocused);
            const auto pid = focused == windows.end() ? 0 : focused->pid;
            tell([pid](const Events& events) { events.activated(pid); });
        });
    update(sway_->windows());
}

void SwayWorkspace::update(const Windows& windows) {
    // Do this first, since a process ID may already have a new owner.
    std::vector<std::int64_t> ended;
    for (const auto& [pid, process] : processes_) {
        if (process->hasEnded()) ended.push_back(pid);
    }
    for (const auto pid : ended) {
        processes_.erase(pid);
        running_.erase(pid);
    }
    const auto before = std::exchange(running_, {});
    for (const auto& window : windows) {
        if (window.pid == getpid()) continue;
        auto& process = processes_[window.pid];
        if (!process)
            process = ProcessWatch::open(window.pid, [this] { update(sway_->windows()); });
        if (process)
            running_.insert(window.pid);
        else
            processes_.erase(window.pid);
    }
    for (const auto pid : ended) tell([pid](const Events& events) { events.terminated(pid); });
    for (const auto pid : std::set(running_)) {
        if (!before.contains(pid)) tell([pid](const Events& events) { events.launched(pid); });
    }
}

RunningApplication SwayWorkspace::describe(const SwayWindow& window) {
    const auto identity = identifyApp(installed_.entries(), traitsOf(window));
    return {window.pid, identity.bundleID, identity.name};
}

std::vector<RunningApplication> SwayWorkspace::runningApplications() {
    auto windows = sway_->windows();
    std::ranges::sort(windows, {}, &SwayWindow::id);
    std::vector<RunningApplication> apps;
    for (const auto& window : windows) {
        if (window.pid != getpid() &&
            std::ranges::find(apps, window.pid, &RunningApplication::pid) == apps.end())
            apps.push_back(describe(window));
    }
    return apps;
}

std::optional<RunningApplication> SwayWorkspace::application(std::int64_t pid) {
    const auto windows = sway_->windows();
    const auto found = std::ranges::find(windows, pid, &SwayWindow::pid);
    return found == windows.end() ? std::nullopt : std::optional(describe(*found));
}

std::optional<RunningApplication> SwayWorkspace::frontmostApplication() {
    const auto windows = sway_->windows();
    const auto focused = std::ranges::find(windows, true, &SwayWindow::isFocused);
    return focused == windows.end() ? std::nullopt : std::optional(describe(*focused));
}

std::shared_ptr<const Picture> SwayWorkspace::icon(std::int64_t pid) {
    const auto app = application(pid);
    return app && app->bundleID ? icon(*app->bundleID) : nullptr;
}

std::shared_ptr<const Picture> SwayWorkspace::icon(std::string_view bundleID) {
    return installed_.icon(bundleID);
}

bool SwayWorkspace::isActive(std::int64_t pid) {
    const auto windows = sway_->windows();
    return std::ranges::any_of(
        windows, [pid](const SwayWindow& window) { return window.isFocused && window.pid == pid; });
}

void SwayWorkspace::activate(std::int64_t pid) {
    const auto windows = sway_->windows();
    const auto found = std::ranges::find(windows, pid, &SwayWindow::pid);
    if (found != windows.end())
        sway_->connection().run(fmt::format("[con_id={}] focus", found->id));
}

void SwayWorkspace::terminate(std::int64_t pid) {
    const auto found = processes_.find(pid);
    if (found != processes_.end()) found->second->signal(SIGTERM);
}

OrvelCore::Subscription SwayWorkspace::observe(Events events) {
    return observers_.add(std::move(events));
}

}  // namespace OrvelSystem
