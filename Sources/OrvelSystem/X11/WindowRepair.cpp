#include "OrvelSystem/X11/WindowRepair.h"

#include <string_view>

#include <xcb/shape.h>

#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

namespace {

constexpr std::string_view opacityProperty = "_NET_WM_WINDOW_OPACITY";

template <class Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

std::uint8_t shapeEvent(xcb_connection_t* connection) {
    const auto* const shape = xcb_get_extension_data(connection, &xcb_shape_id);
    return shape && shape->present ? shape->first_event : std::uint8_t(0);
}

/// Interned on first use for each connection, since atoms of another server have different numbers.
xcb_atom_t opacityAtom(xcb_connection_t* connection) {
    static xcb_connection_t* known = nullptr;
    static xcb_atom_t atom = XCB_ATOM_NONE;
    if (known == connection) return atom;
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(opacityProperty.size()),
                        opacityProperty.data()),
        nullptr));
    known = connection;
    return atom = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void place(xcb_connection_t* connection, xcb_window_t window, const WindowState& wanted) {
    const std::uint32_t values[] = {static_cast<std::uint32_t>(wanted.x),
                                    static_cast<std::uint32_t>(wanted.y), wanted.width,
                                    wanted.height, 0};
    xcb_configure_window(connection, window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_BORDER_WIDTH,
                         values);
}

}  // namespace

void watchShape(xcb_connection_t* connection, xcb_window_t window) {
    if (shapeEvent(connection) != 0) xcb_shape_select_input(connection, window, 1);
}

WindowChange repairWindow(xcb_connection_t* connection, const xcb_screen_t& screen,
                          xcb_window_t window, const WindowState& wanted,
                          const xcb_generic_event_t& event) {
    bool isChanged = false;
    switch (event.response_type) {
        case XCB_DESTROY_NOTIFY:
            return as<xcb_destroy_notify_event_t>(event).window == window ? WindowChange::destroyed
                                                                          : WindowChange::none;
        case XCB_UNMAP_NOTIFY: {
            const auto& unmap = as<xcb_unmap_notify_event_t>(event);
            isChanged = unmap.window == window && unmap.event == window && wanted.isMapped;
            if (isChanged) xcb_map_window(connection, window);
            break;
        }
        case XCB_REPARENT_NOTIFY: {
            const auto& reparent = as<xcb_reparent_notify_event_t>(event);
            isChanged = reparent.window == window && reparent.parent != screen.root;
            if (isChanged) {
                xcb_reparent_window(connection, window, screen.root, wanted.x, wanted.y);
                if (wanted.isMapped) xcb_map_window(connection, window);
            }
            break;
        }
        case XCB_CONFIGURE_NOTIFY: {
            const auto& now = as<xcb_configure_notify_event_t>(event);
            isChanged = now.window == window && now.event == window &&
                        (now.x != wanted.x || now.y != wanted.y || now.width != wanted.width ||
                         now.height != wanted.height || now.border_width != 0);
            if (isChanged) place(connection, window, wanted);
            break;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto& property = as<xcb_property_notify_event_t>(event);
            isChanged = property.window == window && property.state == XCB_PROPERTY_NEW_VALUE &&
                        property.atom == opacityAtom(connection);
            if (isChanged) xcb_delete_property(connection, window, property.atom);
            break;
        }
        default: {
            const auto shape = shapeEvent(connection);
            if (shape == 0 || event.response_type != shape + XCB_SHAPE_NOTIFY) break;
            const auto& notify = as<xcb_shape_notify_event_t>(event);
            isChanged = notify.affected_window == window && wanted.isUnshaped && notify.shaped &&
                        notify.shape_kind == XCB_SHAPE_SK_BOUNDING;
            if (isChanged)
                xcb_shape_mask(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0,
                               XCB_PIXMAP_NONE);
            break;
        }
    }
    if (!isChanged) return WindowChange::none;
    xcb_flush(connection);
    return WindowChange::repaired;
}

}  // namespace OrvelSystem
