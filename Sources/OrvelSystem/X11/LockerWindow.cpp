#include "OrvelSystem/X11/LockerWindow.h"

#include <algorithm>

#include <xcb/randr.h>

#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

namespace {

// In pixels. A locker may leave the outermost pixels uncovered, so that the server does not treat
// the windows below as fully obscured.
constexpr int margin = 2;

bool fillsDisplay(const xcb_get_geometry_reply_t& frame,
                  const xcb_randr_get_monitors_reply_t& monitors) {
    for (auto at = xcb_randr_get_monitors_monitors_iterator(&monitors); at.rem;
         xcb_randr_monitor_info_next(&at)) {
        const auto& display = *at.data;
        if (frame.x <= display.x + margin && frame.y <= display.y + margin &&
            frame.x + frame.width >= display.x + display.width - margin &&
            frame.y + frame.height >= display.y + display.height - margin)
            return true;
    }
    return false;
}

struct Window {
    XReply<xcb_get_window_attributes_reply_t> attributes;
    XReply<xcb_get_geometry_reply_t> geometry;

    Window(xcb_connection_t* connection, xcb_window_t window) {
        const auto attributesCookie = xcb_get_window_attributes(connection, window);
        const auto geometryCookie = xcb_get_geometry(connection, window);
        attributes.reset(xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
        geometry.reset(xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    }
    bool isVisible() const {
        return attributes && geometry && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
               attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
    }
};

}  // namespace

WindowsAbove windowsAbove(xcb_connection_t* connection, xcb_window_t root,
                          const std::function<bool(xcb_window_t)>& isOwn) {
    const auto monitorsCookie = xcb_randr_get_monitors(connection, root, 1);
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr));
    const XReply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(connection, monitorsCookie, nullptr));
    WindowsAbove above;
    if (!tree || !monitors) return above;
    const auto* const first = xcb_query_tree_children(tree.get());
    for (const auto* at = first + xcb_query_tree_children_length(tree.get()); at-- != first;) {
        if (isOwn(*at)) break;
        const Window window(connection, *at);
        if (!window.isVisible()) continue;
        above.any = true;
        if (window.attributes->override_redirect != 0 &&
            fillsDisplay(*window.geometry, *monitors)) {
            above.locker = true;
            break;
        }
    }
    return above;
}

bool hasLockerInside(xcb_connection_t* connection, xcb_window_t root, xcb_window_t parent) {
    const auto monitorsCookie = xcb_randr_get_monitors(connection, root, 1);
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, parent), nullptr));
    const XReply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(connection, monitorsCookie, nullptr));
    if (!tree || !monitors) return false;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    return std::any_of(children, children + xcb_query_tree_children_length(tree.get()),
                       [&](xcb_window_t child) {
                           const Window window(connection, child);
                           return window.isVisible() && fillsDisplay(*window.geometry, *monitors);
                       });
}

bool isKeyboardGrabbedByOther(xcb_connection_t* connection, xcb_window_t root) {
    xcb_grab_server(connection);
    // Synchronous, so that the server holds back a key that is pressed during this grab until the
    // grab ends. Otherwise `InputNet` would miss a modifier, and the next key could be a shortcut
    // of the window manager.
    const auto cookie = xcb_grab_keyboard(connection, 0, root, XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
    // Has no effect if the grab failed.
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_ungrab_server(connection);
    // The reply is awaited after the server grab has ended. A process that is stopped while it
    // holds one freezes the whole display.
    const XReply<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(connection, cookie, nullptr));
    return !reply || reply->status != XCB_GRAB_STATUS_SUCCESS;
}

}  // namespace OrvelSystem
