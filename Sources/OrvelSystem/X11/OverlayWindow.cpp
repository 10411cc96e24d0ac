#include "OrvelSystem/X11/OverlayWindow.h"

#include <string>
#include <utility>

#include <xcb/composite.h>
#include <xcb/shape.h>

#include "OrvelSystem/X11/LockerWindow.h"
#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

namespace {

// The largest size that X11 allows, in pixels. It uses no memory if the server draws directly to
// the screen.
constexpr std::uint16_t largest = 32767;

bool hasExtension(xcb_connection_t* connection, xcb_extension_t* extension) {
    const auto* const data = xcb_get_extension_data(connection, extension);
    return data && data->present;
}

xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screenNumber > 0 && screens.rem > 1; --screenNumber) xcb_screen_next(&screens);
    return screens.data->root;
}

}  // namespace

bool isComposited(xcb_connection_t* connection, int screenNumber) {
    const auto name = "_NET_WM_CM_S" + std::to_string(screenNumber);
    const XReply<xcb_intern_atom_reply_t> selection(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr));
    if (!selection) return false;
    const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection->atom), nullptr));
    return owner && owner->owner != XCB_NONE;
}

OverlayWindow::OverlayWindow(xcb_connection_t* connection, int screenNumber)
    : connection_(connection), screenNumber_(screenNumber) {}

bool OverlayWindow::hold(std::uint32_t color) {
    if (window_ != XCB_NONE) return true;
    auto* const c = connection_;
    // Without an input shape, the window would take every click.
    if (!hasExtension(c, &xcb_composite_id) || !hasExtension(c, &xcb_shape_id) ||
        isComposited(c, screenNumber_))
        return false;
    // The server supports the extension only up to the version that the client states.
    xcb_discard_reply(c, xcb_composite_query_version(c, 0, 4).sequence);
    const XReply<xcb_composite_get_overlay_window_reply_t> overlay(
        xcb_composite_get_overlay_window_reply(
            c, xcb_composite_get_overlay_window(c, rootOf(c, screenNumber_)), nullptr));
    if (!overlay) return false;
    window_ = number_ = overlay->overlay_win;
    // The contents stay in place while the window grows. Remove the background first: another
    // client that holds the window may have set a colour, which would flash now.
    const std::uint32_t look[] = {XCB_BACK_PIXMAP_NONE, XCB_GRAVITY_NORTH_WEST, windowRepairEvents};
    xcb_change_window_attributes(c, window_,
                                 XCB_CW_BACK_PIXMAP | XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK, look);
    watchShape(c, window_);
    xcb_shape_rectangles(c, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         window_, 0, 0, 0, nullptr);
    const std::uint32_t size[] = {largest, largest};
    xcb_configure_window(c, window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    // Another client that holds the window may have unmapped it.
    xcb_map_window(c, window_);
    xcb_change_window_attributes(c, window_, XCB_CW_BACK_PIXEL, &color);
    xcb_flush(c);
    return true;
}

bool OverlayWindow::isThere() const {
    const XReply<xcb_get_geometry_reply_t> frame(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window_), nullptr));
    return frame != nullptr;
}

WindowState OverlayWindow::wantedState(const xcb_generic_event_t& event) const {
    WindowState wanted{.isMapped = true};
    if (event.response_type != XCB_CONFIGURE_NOTIFY) return wanted;
    const auto& now = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    if (now.window != window_) return wanted;
    const XReply<xcb_get_geometry_reply_t> screen(xcb_get_geometry_reply(
        connection_, xcb_get_geometry(connection_, rootOf(connection_, screenNumber_)), nullptr));
    const bool isEnough = !screen || (now.width >= screen->width && now.height >= screen->height);
    wanted.width = isEnough ? now.width : screen->width;
    wanted.height = isEnough ? now.height : screen->height;
    return wanted;
}

bool OverlayWindow::hasLocker() const {
    return number_ != XCB_NONE &&
           hasLockerInside(connection_, rootOf(connection_, screenNumber_), number_);
}

void OverlayWindow::hide() {
    if (window_ != XCB_NONE && !isComposited(connection_, screenNumber_) && !hasLocker())
        xcb_unmap_window(connection_, window_);
}

void OverlayWindow::release() {
    if (window_ == XCB_NONE) return;
    xcb_composite_release_overlay_window(connection_, std::exchange(window_, XCB_NONE));
    xcb_flush(connection_);
}

}  // namespace OrvelSystem
