#include <memory>
#include <utility>

#include <unistd.h>

#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelLock/KioskController.h"
#include "OrvelLock/X11/X11Kiosk.h"
#include "OrvelSystem/X11/ActiveWindow.h"

namespace OrvelLock {

using OrvelBlur::PanelStack;
using OrvelSystem::ActiveWindow;

namespace {

std::optional<AppHandle> handleOf(const std::optional<ActiveWindow::App>& app) {
    if (!app) return {};
    return AppHandle{app->pid, app->window};
}

}  // namespace

KioskSystem KioskSystem::live(OrvelSystem::MainLoop& loop) {
    auto& kiosk = X11Kiosk::shared();
    // Track the active window from the start: when a lock begins, its own card may already have the
    // focus.
    ActiveWindow::shared();
    // This program's own window that had the focus. No other app must be activated in its place,
    // but the focus does not return to it by itself.
    const auto own = std::make_shared<xcb_window_t>(XCB_NONE);
    KioskSystem system{
        .loop = loop,
        .ownPID = getpid(),
        .frontmostApp =
            [own] {
                const auto known = ActiveWindow::shared().known();
                const bool isOwn = known && known->pid == getpid();
                *own = isOwn ? known->window : XCB_NONE;
                return handleOf(isOwn ? known : ActiveWindow::shared().lastOfOthers());
            },
        .setRegular = [&kiosk] { kiosk.showBackstop(); },
        .setAccessory =
            [&kiosk, own] {
                kiosk.hideBackstop();
                PanelStack::shared().setYielding(false);
                if (const auto window = std::exchange(*own, XCB_NONE); window != XCB_NONE)
                    ActiveWindow::shared().activate(window);
            },
        .activate = [] {},
        .tryActivate = [&kiosk] { return kiosk.take(); },
        .setPresentationOptions =
            [&kiosk](std::uint32_t options) {
                if (options == 0) kiosk.giveBack();
            },
        .activateApp =
            [](const AppHandle& app) {
                ActiveWindow::shared().activate(static_cast<xcb_window_t>(app.window));
            }};
    system.prepare = [&kiosk] { kiosk.prepare(); };
    system.reassert = [&kiosk] { return kiosk.reassert(); };
    system.reportsLosses = [&kiosk] { return kiosk.reportsLosses(); };
    system.yield = [&kiosk] { kiosk.yield(); };
    system.isHeldBySystemLock = [&kiosk] { return kiosk.isHeldByLocker(); };
    system.observe = [&kiosk](std::function<void()> disturbed) {
        kiosk.onDisturbed = std::move(disturbed);
    };
    return system;
}

}  // namespace OrvelLock
