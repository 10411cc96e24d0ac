#include "OrvelLock/X11/LockBackstop.h"

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelUI/Palette.h"

namespace OrvelLock {

using OrvelBlur::PanelStack;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

// The largest extent that X11 coordinates can express, in pixels. It costs nothing where the server
// draws directly to the screen.
constexpr std::uint16_t largest = 32767;

xcb_connection_t* connection() {
    return X11::shared().connection();
}

}  // namespace

LockBackstop::LockBackstop() : standIn_([this] { takeStandIn(); }) {
    makeWindow();
    // Also while the window is hidden, because a destroyed window could not be shown.
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
}

LockBackstop::~LockBackstop() {
    PanelStack::shared().remove(window_);
    xcb_destroy_window(connection(), window_);
    X11::shared().flush();
}

void LockBackstop::makeWindow() {
    const auto& x11 = X11::shared();
    window_ = xcb_generate_id(connection());
    const std::uint32_t values[4] = {
        OrvelUI::Palette::lockTint, 1,
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS | OrvelSystem::windowRepairEvents,
        x11.screen()->default_colormap};
    xcb_create_window(
        connection(), XCB_COPY_FROM_PARENT, window_, x11.root(), 0, 0, state_.width, state_.height,
        0, XCB_WINDOW_CLASS_INPUT_OUTPUT, x11.screen()->root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    OrvelSystem::watchShape(connection(), window_);
    PanelStack::shared().add(window_, OrvelBlur::WindowLevel::lock - 1);
}

void LockBackstop::show() {
    takeStandIn();
    if (isShown()) return;
    fit();
    map();
    X11::shared().selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

void LockBackstop::map() {
    state_.isMapped = true;
    PanelStack::shared().orderFront(window_);
    xcb_map_window(connection(), window_);
    X11::shared().flush();
}

void LockBackstop::takeStandIn() {
    if (standIn_.take()) fit();
}

void LockBackstop::hide() {
    standIn_.giveBack();
    if (!isShown()) return;
    state_.isMapped = false;
    PanelStack::shared().orderOut(window_);
    xcb_unmap_window(connection(), window_);
    X11::shared().flush();
}

void LockBackstop::handle(const xcb_generic_event_t& event) {
    switch (
        OrvelSystem::repairWindow(connection(), *X11::shared().screen(), window_, state_, event)) {
        case OrvelSystem::WindowChange::none:
            break;
        case OrvelSystem::WindowChange::repaired:
            PanelStack::shared().raise();
            return;
        case OrvelSystem::WindowChange::destroyed:
            PanelStack::shared().remove(window_);
            makeWindow();
            if (isShown()) map();
            return;
    }
    if (!isShown() || event.response_type != XCB_CONFIGURE_NOTIFY) return;
    const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    // Qt passes on only the last of several ConfigureNotify events in a row, so the event of the
    // root window itself may be missing. Any event that is reported on the root is therefore used.
    if (configure.event == X11::shared().root()) fit();
}

void LockBackstop::fit() {
    state_.width = state_.height = largest;
    // A compositing manager keeps a pixmap of each window, which would take gigabytes at this size.
    if (OrvelSystem::isComposited(connection(), X11::shared().screenNumber())) {
        const XReply<xcb_get_geometry_reply_t> screen(xcb_get_geometry_reply(
            connection(), xcb_get_geometry(connection(), X11::shared().root()), nullptr));
        if (screen) {
            state_.width = screen->width;
            state_.height = screen->height;
        }
    }
    const std::uint32_t size[2] = {state_.width, state_.height};
    xcb_configure_window(connection(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size);
    standIn_.fit(state_.width, state_.height);
    X11::shared().flush();
}

}  // namespace OrvelLock
