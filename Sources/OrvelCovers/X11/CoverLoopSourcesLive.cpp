#include <limits>
#include <memory>

#include "OrvelCore/PeekRule.h"
#include "OrvelCovers/CoverLoop.h"
#include "OrvelCovers/PeekDetector.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/WindowManager.h"
#include "OrvelSystem/X11/WindowServerMirror.h"

namespace OrvelCovers {

using OrvelSystem::ActiveWindow;
using OrvelSystem::WindowServer;
using OrvelSystem::WindowServerMirror;

CoverLoop::Sources CoverLoop::Sources::live(OrvelSystem::MainLoop& loop, std::int64_t ownPID) {
    Sources sources;
    sources.windows = WindowServer::onScreenWindows;
    sources.windowNumbers = WindowServer::onScreenWindowNumbers;
    sources.windowBounds = WindowServer::bounds;
    sources.displays = WindowServer::displayBounds;
    sources.activePID = []() -> std::optional<std::int64_t> {
        const auto app = ActiveWindow::shared().known();
        return app ? std::optional(app->pid) : std::nullopt;
    };
    sources.peekPoint =
        [&loop, detector = std::make_shared<PeekDetector>()]() -> std::optional<OrvelCore::Point> {
        const auto inputs = WindowServerMirror::shared().inputs();
        const double now = loop.uptime();
        // A key press while Option is down ends the peek until Option is released.
        const double sinceKeyDown = inputs.keyPressed ? 0 : std::numeric_limits<double>::infinity();
        // Reading the pointer needs a round trip to the server, so it is done only during a peek.
        if (!detector->isActive(inputs.option, inputs.optionOnly, sinceKeyDown, now))
            return std::nullopt;
        return OrvelSystem::PointerState::location();
    };
    sources.mouseDown = [] { return WindowServerMirror::shared().inputs().button; };
    sources.drawsPanelsInFront = OrvelSystem::WindowManager::drawsPanelsInFront;
    sources.now = [&loop] { return loop.uptime(); };
    sources.ownPID = ownPID;
    return sources;
}

WindowWatcher::Reads WindowWatcher::Reads::live() {
    return {.numbers = WindowServer::onScreenWindowNumbers,
            .bounds = WindowServer::bounds,
            .button = [] { return WindowServerMirror::shared().inputs().button; },
            .option = [] { return WindowServerMirror::shared().inputs().option; },
            .observe =
                [](std::function<void()> changed) {
                    return WindowServerMirror::shared().observe(std::move(changed));
                }};
}

}  // namespace OrvelCovers
