#include "OrvelLock/Linux/Shield.h"

#include <algorithm>

#include "OrvelBlur/Linux/PanelStack.h"
#include "OrvelBlur/OverlayPanel.h"
#include "OrvelSystem/Linux/OverlayWindow.h"
#include "OrvelUI/Palette.h"

namespace OrvelLock {

using OrvelBlur::PanelStack;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

// As large as X11 can name. It costs nothing where the server draws straight to the screen.
constexpr std::uint32_t largest = 32767;

xcb_connection_t* connection() {
    return X11::shared().connection();
}

}  // namespace

Shield::Shield() : window_(xcb_generate_id(connection())), standIn_([this] { takeStandIn(); }) {
    const auto& x11 = X11::shared();
    const std::uint32_t values[4] = {OrvelUI::Palette::lockTint, 1,
                                     XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS,
                                     x11.screen()->default_colormap};
    xcb_create_window(
        connection(), XCB_COPY_FROM_PARENT, window_, x11.root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, x11.screen()->root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    PanelStack::shared().add(window_, OrvelBlur::WindowLevel::lock - 1);
}

Shield::~Shield() {
    PanelStack::shared().remove(window_);
    xcb_destroy_window(connection(), window_);
    X11::shared().flush();
}

void Shield::show() {
    takeStandIn();
    if (isShown_) return;
    isShown_ = true;
    fit();
    PanelStack::shared().orderFront(window_);
    xcb_map_window(connection(), window_);
    X11::shared().flush();
    X11::shared().selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    events_ = X11::shared().onEvent([this](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) != XCB_CONFIGURE_NOTIFY) return;
        const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        // Of several in a row Qt hands only the last one on, so that the screen's own may be gone.
        if (configure.event == X11::shared().root()) fit();
    });
}

void Shield::takeStandIn() {
    if (standIn_.take()) fit();
}

void Shield::hide() {
    standIn_.giveBack();
    if (!isShown_) return;
    isShown_ = false;
    events_.reset();
    PanelStack::shared().orderOut(window_);
    xcb_unmap_window(connection(), window_);
    X11::shared().flush();
}

void Shield::fit() {
    std::uint32_t size[2] = {largest, largest};
    // A compositing manager keeps a picture of each window, of this one gigabytes.
    if (OrvelSystem::isComposited(connection(), X11::shared().screenNumber())) {
        const XReply<xcb_get_geometry_reply_t> screen(xcb_get_geometry_reply(
            connection(), xcb_get_geometry(connection(), X11::shared().root()), nullptr));
        if (screen) {
            size[0] = screen->width;
            size[1] = screen->height;
        }
    }
    xcb_configure_window(connection(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size);
    standIn_.fit(size[0], size[1]);
    X11::shared().flush();
}

}  // namespace OrvelLock
