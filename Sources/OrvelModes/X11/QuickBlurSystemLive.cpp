#include <cmath>
#include <utility>

#include "OrvelModes/Blur/LiveModeSurface.h"
#include "OrvelModes/Blur/QuickBlurSystem.h"
#include "OrvelModes/Qt/QuickBlurPillContent.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/Displays.h"

namespace OrvelModes {

using OrvelSystem::ActiveWindow;
using OrvelSystem::Appearance;

namespace {

std::shared_ptr<OrvelBlur::PanelContent> makePill(const OrvelCore::Rect& display,
                                                  std::function<void()> onReveal) {
    const double scale = OrvelSystem::QtScreens::scaleAt({display.x, display.y});
    return makeQuickBlurPill(static_cast<int>(std::floor(display.width / scale)),
                             std::move(onReveal));
}

}  // namespace

QuickBlurSystem QuickBlurSystem::live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                      std::int64_t ownPID,
                                      std::function<OrvelCore::OverlayLook()> look,
                                      std::function<bool()> macLocked) {
    QuickBlurSystem system;
    system.displays = OrvelSystem::Displays::frames;
    system.makeSurface = LiveModeSurface::forQuickBlur(loop, backend, std::move(look), macLocked);
    system.frontApp = [ownPID]() -> std::optional<std::int64_t> {
        const auto app = ActiveWindow::shared().current();
        if (!app || app->pid == 0 || app->pid == ownPID) return std::nullopt;
        return app->pid;
    };
    // The surface takes the keyboard itself; X11 needs no further activation.
    system.activateOrvel = [] {};
    system.activateApp = [](std::int64_t pid) { OrvelSystem::Workspace::shared().activate(pid); };
    system.reduceMotion = [] { return Appearance::shared().reducesMotion(); };
    system.pill = makePill;
    system.macLocked = std::move(macLocked);
    return system;
}

}  // namespace OrvelModes
