#include <cmath>
#include <utility>

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelModes/Blur/LiveModeSurface.h"
#include "OrvelModes/Blur/QuickBlurSystem.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/Displays.h"
#include "OrvelUI/Qt/NoticePillWidget.h"

namespace OrvelModes {

using OrvelBlur::QtPanelContent;
using OrvelSystem::ActiveWindow;
using OrvelSystem::Appearance;
using OrvelUI::NoticePillWidget;
using OrvelUI::QuickBlurPill;

namespace {

std::shared_ptr<OrvelBlur::PanelContent> makePill(const OrvelCore::Rect& display,
                                                  std::function<void()> onReveal) {
    const auto width = static_cast<int>(
        std::floor(display.width / OrvelSystem::QtScreens::scaleAt({display.x, display.y})));
    const auto make = [width, onReveal = std::move(onReveal)]() -> std::unique_ptr<QWidget> {
        auto pill = std::make_unique<NoticePillWidget>(QuickBlurPill::content(std::nullopt),
                                                       std::nullopt, width, true, onReveal);
        pill->fadeOutAfter(QuickBlurPill::visibleFor,
                           Appearance::shared().reducesMotion() ? 0 : QuickBlurPill::fadeSeconds);
        return pill;
    };
    const auto place = [](const QWidget& pill, const QSize& panel) {
        return static_cast<const OrvelUI::OverlayView&>(pill).placement(panel);
    };
    return std::make_shared<QtPanelContent>(make, place);
}

}  // namespace

QuickBlurSystem QuickBlurSystem::live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                      std::int64_t ownPID,
                                      std::function<OrvelCore::OverlayLook()> look,
                                      std::function<bool()> macLocked) {
    QuickBlurSystem system;
    system.displays = OrvelSystem::Displays::frames;
    system.makeSurface = [&loop, backend, look = std::move(look), macLocked](bool keyboard) {
        LiveModeSurface::Setting setting{.loop = loop, .backend = backend};
        setting.level = OrvelBlur::WindowLevel::quickBlur;
        setting.keyboard = keyboard;
        setting.stationary = true;
        setting.look = look();
        setting.mayRetakeKeyboard = [macLocked] { return !macLocked(); };
        return std::make_unique<LiveModeSurface>(std::move(setting));
    };
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
