#include <utility>

#include "OrvelModes/Blur/FocusBlurSystem.h"
#include "OrvelModes/Blur/LiveModeSurface.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/WindowManager.h"

namespace OrvelModes {

using OrvelSystem::WindowServer;

FocusBlurSystem FocusBlurSystem::live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                      std::int64_t ownPID,
                                      std::function<OrvelCore::OverlayLook()> look) {
    FocusBlurSystem system;
    system.windows = WindowServer::onScreenWindows;
    system.displays = WindowServer::displayBounds;
    system.makeSurface = LiveModeSurface::forFocusBlur(loop, backend, std::move(look));
    system.ownPID = ownPID;
    system.reduceMotion = [] { return OrvelSystem::Appearance::shared().reducesMotion(); };
    system.frontPID = []() -> std::optional<std::int64_t> {
        const auto app = OrvelSystem::ActiveWindow::shared().known();
        if (!app || app->pid == 0) return std::nullopt;
        return app->pid;
    };
    system.drawsOverlaysInFront = OrvelSystem::WindowManager::drawsPanelsInFront;
    return system;
}

}  // namespace OrvelModes
