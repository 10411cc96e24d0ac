#include "OrvelLock/Linux/X11Kiosk.h"

#include <memory>
#include <utility>

#include <unistd.h>

#include "OrvelBlur/Linux/PanelStack.h"
#include "OrvelBlur/Linux/Roof.h"
#include "OrvelLock/KioskController.h"
#include "OrvelSystem/Linux/ActiveWindow.h"
#include "OrvelSystem/Linux/StandIn.h"
#include "OrvelUI/Palette.h"

namespace OrvelLock {

using OrvelBlur::PanelStack;
using OrvelBlur::Roof;
using OrvelSystem::ActiveWindow;
using OrvelSystem::StandIn;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

std::optional<AppHandle> handleOf(const std::optional<ActiveWindow::App>& app) {
    if (!app) return {};
    return AppHandle{app->pid, app->window};
}

}  // namespace

X11Kiosk& X11Kiosk::shared() {
    // Never destroyed: its window goes with the connection, which ends before statics do.
    static auto& kiosk = *new X11Kiosk;
    return kiosk;
}

bool X11Kiosk::tryGrab() {
    auto* const connection = X11::shared().connection();
    const xcb_window_t window = shield_.window();
    // Owner events: the card's own window gets its keys and clicks as ever, and what is meant for
    // any other program ends here.
    const auto keyboard = xcb_grab_keyboard(connection, 1, window, XCB_CURRENT_TIME,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto pointer = xcb_grab_pointer(
        connection, 1, window,
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION,
        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
    const XReply<xcb_grab_keyboard_reply_t> keyboardReply(
        xcb_grab_keyboard_reply(connection, keyboard, nullptr));
    const XReply<xcb_grab_pointer_reply_t> pointerReply(
        xcb_grab_pointer_reply(connection, pointer, nullptr));
    holdsGrabs_ = keyboardReply && keyboardReply->status == XCB_GRAB_STATUS_SUCCESS &&
                  pointerReply && pointerReply->status == XCB_GRAB_STATUS_SUCCESS;
    if (!holdsGrabs_) {
        ungrab();
        return false;
    }
    const bool isRoofed = Roof::shared().hold(OrvelUI::Palette::lockTint);
    shield_.standIn().setKeys(isRoofed ? StandIn::Keys::takenUnderRoof : StandIn::Keys::taken);
    shield_.standIn().takeDown();
    return true;
}

void X11Kiosk::ungrab() {
    holdsGrabs_ = false;
    shield_.standIn().setKeys(StandIn::Keys::free);
    Roof::shared().release();
    auto* const connection = X11::shared().connection();
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    X11::shared().flush();
}

bool X11Kiosk::reassert() {
    showShield();
    if (!tryGrab()) return false;
    PanelStack::shared().setYielding(false);
    PanelStack::shared().raise();
    return true;
}

void X11Kiosk::yield() {
    // What has come to the top unseen is not to be seen now.
    PanelStack::shared().raise();
    ungrab();
    shield_.standIn().takeDown();
    PanelStack::shared().setYielding(true);
}

KioskSystem KioskSystem::live(OrvelSystem::MainLoop& loop) {
    auto& kiosk = X11Kiosk::shared();
    // Followed from the start: by the time a lock asks, its own card may have the focus.
    ActiveWindow::shared();
    // Of this program's windows the one that was in use. No other app is to come forward for it,
    // but the focus does not find its way back by itself.
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
        .setRegular = [&kiosk] { kiosk.showShield(); },
        .setAccessory =
            [&kiosk, own] {
                kiosk.hideShield();
                PanelStack::shared().setYielding(false);
                if (const auto window = std::exchange(*own, XCB_NONE); window != XCB_NONE)
                    ActiveWindow::shared().activate(window);
            },
        .activate = [] {},
        .tryActivate = [&kiosk] { return kiosk.tryGrab(); },
        .setPresentationOptions =
            [&kiosk](std::uint32_t options) {
                if (options == 0) kiosk.ungrab();
            },
        .activateApp =
            [](const AppHandle& app) {
                ActiveWindow::shared().activate(static_cast<xcb_window_t>(app.window));
            }};
    system.prepare = [&kiosk] { kiosk.prepare(); };
    system.reassert = [&kiosk] { return kiosk.reassert(); };
    system.yield = [&kiosk] { kiosk.yield(); };
    return system;
}

}  // namespace OrvelLock
