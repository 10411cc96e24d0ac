#include "OrvelApp/Wayland/SwayCovers.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

#include "OrvelCovers/Wayland/HidingCover.h"
#include "OrvelCovers/Wayland/LayerBadge.h"

namespace OrvelApp {

using namespace OrvelCovers;
using OrvelCore::SwayWindow;
using OrvelCore::WindowID;
using OrvelSystem::Workspace;

CoverSystem swayCovers(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier,
                       std::shared_ptr<OrvelSystem::Sway> sway,
                       const OrvelSystem::Compositor& compositor, OrvelSystem::Outputs& outputs) {
    const std::int64_t ownPID = getpid();
    CoverSystem covers{
        .makeSurface = [sway](const OrvelCore::CoverRequest& request, auto,
                              std::function<void()> onClick) -> std::unique_ptr<CoverSurface> {
            return std::make_unique<HidingCover>(sway, request, std::move(onClick));
        },
        .sources = {.windows =
                        [sway] {
                            std::vector<OrvelCore::WindowInfo> windows;
                            for (const auto& window : sway->windows())
                                windows.push_back({.number = window.id,
                                                   .ownerPID = window.pid,
                                                   .bounds = window.frame});
                            return windows;
                        },
                    .windowNumbers =
                        [sway] {
                            std::vector<WindowID> numbers;
                            for (const auto& window : sway->windows()) numbers.push_back(window.id);
                            return numbers;
                        },
                    .windowBounds =
                        [sway](const std::vector<WindowID>& wanted) {
                            std::map<WindowID, OrvelCore::Rect> bounds;
                            for (const auto& window : sway->windows()) {
                                if (std::ranges::find(wanted, window.id) != wanted.end())
                                    bounds.emplace(window.id, window.frame);
                            }
                            return bounds;
                        },
                    .displays = [&outputs] { return outputs.frames(); },
                    .activePID = [sway]() -> std::optional<std::int64_t> {
                        const auto windows = sway->windows();
                        const auto focused =
                            std::ranges::find(windows, true, &SwayWindow::isFocused);
                        if (focused == windows.end()) return std::nullopt;
                        return focused->pid;
                    },
                    // The position of the pointer is not known.
                    .peekPoint = [] { return std::optional<OrvelCore::Point>(); },
                    .mouseDown = [] { return false; },
                    .now = [&loop] { return loop.uptime(); },
                    .ownPID = ownPID},
        // The workspace reports every change of the windows on the main thread, so the watcher's
        // own thread has nothing to read.
        .watcherReads = {.numbers = [] { return std::vector<WindowID>(); },
                         .bounds =
                             [](const auto&) { return std::map<WindowID, OrvelCore::Rect>(); },
                         .button = [] { return false; },
                         .option = [] { return false; },
                         .observe = [](const auto&) { return nullptr; }},
        .badges = layerBadges(compositor, outputs),
        .appLock = AppLockSystem::live(loop, verifier, ownPID),
        .running = RunningApp::regular,
        .observeWorkspace =
            [](Workspace::Events events) {
                return Workspace::shared().observe(std::move(events));
            }};
    covers.appLock.activateOrvel = [] {};
    covers.appLock.orvelIsActive = [] { return true; };
    // A hidden window has no keyboard to take from it.
    covers.appLock.appIsActive = [](std::int64_t) { return false; };
    return covers;
}

}  // namespace OrvelApp
