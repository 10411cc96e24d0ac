// Windows, their properties, and the keyboard focus and grabs.

#include "Screen.h"

namespace DesktopTest {

xcb_window_t Screen::focusedWindow() {
    return checked(replyOf(connection_, xcb_get_input_focus, xcb_get_input_focus_reply), "focus")
        ->focus;
}

bool Screen::pointerIsGrabbed() {
    const auto reply = checked(
        replyOf(connection_, xcb_grab_pointer, xcb_grab_pointer_reply, 0, root_, 0,
                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        "pointer grab");
    xcb_ungrab_pointer(connection_, XCB_CURRENT_TIME);
    sync();
    return reply->status != XCB_GRAB_STATUS_SUCCESS;
}

bool Screen::keyboardIsGrabbed() {
    const auto reply =
        checked(replyOf(connection_, xcb_grab_keyboard, xcb_grab_keyboard_reply, 0, root_,
                        XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                "keyboard grab");
    xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    sync();
    return reply->status != XCB_GRAB_STATUS_SUCCESS;
}

bool Screen::comboIsGrabbed(std::uint16_t modifiers, xcb_keysym_t key) {
    const auto code = keycode(key);
    const auto cookie = xcb_grab_key_checked(connection_, 0, root_, modifiers, code,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const XReply<xcb_generic_error_t> refused(xcb_request_check(connection_, cookie));
    if (refused) return true;
    xcb_ungrab_key(connection_, code, root_, modifiers);
    sync();
    return false;
}

// Windows of other clients

namespace {

std::vector<xcb_window_t> childrenOf(xcb_connection_t* connection, xcb_window_t window) {
    const auto tree = replyOf(connection, xcb_query_tree, xcb_query_tree_reply, window);
    if (!tree) return {};
    const auto* children = xcb_query_tree_children(tree.get());
    return {children, children + xcb_query_tree_children_length(tree.get())};
}

bool isMapped(xcb_connection_t* connection, xcb_window_t window) {
    const auto attributes =
        replyOf(connection, xcb_get_window_attributes, xcb_get_window_attributes_reply, window);
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

}  // namespace

std::vector<xcb_window_t> Screen::mappedWindows() {
    auto result = childrenOf(connection_, root_);
    std::erase_if(result, [this](auto window) { return !isMapped(connection_, window); });
    return result;
}

xcb_window_t Screen::frameOf(xcb_window_t window) {
    for (;;) {
        const auto tree = replyOf(connection_, xcb_query_tree, xcb_query_tree_reply, window);
        if (!tree || tree->parent == root_ || tree->parent == XCB_NONE) return window;
        window = tree->parent;
    }
}

Area Screen::areaOf(xcb_window_t window) {
    const auto geometry = replyOf(connection_, xcb_get_geometry, xcb_get_geometry_reply, window);
    const auto origin = replyOf(connection_, xcb_translate_coordinates,
                                xcb_translate_coordinates_reply, window, root_, 0, 0);
    if (!geometry || !origin) return {};
    return {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

std::optional<xcb_window_t> Screen::find(std::string_view nameOrClass) {
    auto left = childrenOf(connection_, root_);
    while (!left.empty()) {
        const auto window = left.back();
        left.pop_back();
        // WM_CLASS holds two zero-terminated strings.
        const std::string classes = textProperty(window, "WM_CLASS");
        const bool isClass = classes.substr(0, classes.find('\0')) == nameOrClass;
        if ((isClass || textProperty(window, "WM_NAME") == nameOrClass) &&
            isMapped(connection_, window))
            return window;
        for (const auto child : childrenOf(connection_, window)) left.push_back(child);
    }
    return std::nullopt;
}

std::map<std::string, xcb_window_t> Screen::titles() {
    std::map<std::string, xcb_window_t> titles;
    auto left = childrenOf(connection_, root_);
    while (!left.empty()) {
        const auto window = left.back();
        left.pop_back();
        if (const auto title = textProperty(window, "WM_NAME"); !title.empty()) {
            if (isMapped(connection_, window)) titles.emplace(title, window);
            continue;
        }
        for (const auto child : childrenOf(connection_, window)) left.push_back(child);
    }
    return titles;
}

xcb_atom_t Screen::atom(std::string_view name) {
    return checked(replyOf(connection_, xcb_intern_atom, xcb_intern_atom_reply, 0, name.size(),
                           name.data()),
                   "atom")
        ->atom;
}

xcb_window_t Screen::ownerOf(std::string_view selection) {
    return checked(replyOf(connection_, xcb_get_selection_owner, xcb_get_selection_owner_reply,
                           atom(selection)),
                   "selection owner")
        ->owner;
}

std::string Screen::textProperty(xcb_window_t window, std::string_view name) {
    const auto reply = replyOf(connection_, xcb_get_property, xcb_get_property_reply, 0, window,
                               atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024);
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::optional<std::uint32_t> Screen::cardinal(xcb_window_t window, std::string_view name) {
    const auto reply = replyOf(connection_, xcb_get_property, xcb_get_property_reply, 0, window,
                               atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    if (!reply || xcb_get_property_value_length(reply.get()) < 4) return std::nullopt;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

xcb_window_t Screen::activeWindow() {
    return cardinal(root_, "_NET_ACTIVE_WINDOW").value_or(XCB_NONE);
}

void Screen::ask(xcb_window_t window, std::string_view request, std::uint32_t first,
                 std::uint32_t second) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(request);
    message.data.data32[0] = first;
    message.data.data32[1] = second;
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    sync();
}

void Screen::activate(xcb_window_t window) {
    constexpr std::uint32_t sourceIsPager = 2;
    ask(window, "_NET_ACTIVE_WINDOW", sourceIsPager);
}

}  // namespace DesktopTest
