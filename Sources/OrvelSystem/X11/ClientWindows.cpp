#include "OrvelSystem/X11/ClientWindows.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <unistd.h>

#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/WindowManager.h"

namespace OrvelSystem {

namespace {

constexpr std::uint32_t iconicState = 3;  // a value of `WM_STATE`

/// Types of windows that belong to the desktop itself.
constexpr std::array<std::string_view, 3> desktopTypes = {
    "_NET_WM_WINDOW_TYPE_DESKTOP", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NOTIFICATION"};

xcb_connection_t* connection() {
    return X11::shared().connection();
}

bool isMinimised(xcb_window_t window) {
    const auto state = X11::shared().property32(window, "WM_STATE", 1);
    return !state.empty() && state.front() == iconicState;
}

bool hasClass(xcb_window_t window) {
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection(),
        xcb_get_property(connection(), 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_ANY, 0, 0), nullptr));
    return reply && reply->type != XCB_ATOM_NONE;
}

std::vector<xcb_window_t> childrenOf(xcb_window_t window) {
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), nullptr));
    if (!tree) return {};
    const auto* const first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

/// Finds the window of another X client inside a frame. A window manager that does not list its
/// clients still frames them.
std::optional<xcb_window_t> framedIn(xcb_window_t frame, int depth = 3) {
    if (depth == 0) return std::nullopt;
    const auto mask = ~xcb_get_setup(connection())->resource_id_mask;
    for (const auto child : childrenOf(frame)) {
        if ((child & mask) != (frame & mask)) {
            if (hasClass(child)) return child;
        } else if (const auto found = framedIn(child, depth - 1)) {
            return found;
        }
    }
    return std::nullopt;
}

}  // namespace

ClientWindows::ClientWindows(std::function<void()> changed, std::function<void()> unhidden)
    : changed_(std::move(changed)),
      unhidden_(std::move(unhidden)),
      clientList_(X11::shared().atom("_NET_CLIENT_LIST")),
      managerCheck_(X11::shared().atom("_NET_SUPPORTING_WM_CHECK")),
      windowState_(X11::shared().atom("WM_STATE")) {
    X11::shared().selectOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
    watchManager();
    read();
}

void ClientWindows::watchManager() {
    // The events to select depend on the window manager, so describe all windows again.
    clients_.clear();
    manager_ = WindowManager::proof();
    if (manager_ != 0) {
        // A window manager that crashes does not remove its properties, so watch for the
        // destruction of its window.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection(), manager_, XCB_CW_EVENT_MASK, &mask);
    } else {
        // Without a window manager, only these events report new windows.
        X11::shared().selectOnRoot(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    }
}

void ClientWindows::handle(const xcb_generic_event_t& event) {
    switch (event.response_type) {
        case XCB_PROPERTY_NOTIFY:
            handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
            break;
        case XCB_DESTROY_NOTIFY:
            if (manager_ == 0) {
                changed_();
            } else if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window ==
                       manager_) {
                watchManager();
                changed_();
            }
            break;
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_REPARENT_NOTIFY:
            if (manager_ == 0) changed_();
            break;
        case XCB_FOCUS_IN:
            // Selected only if no window manager reports the active window.
            if (manager_ == 0) (void)ActiveWindow::shared().current();
            break;
        default:
            break;
    }
}

void ClientWindows::handleProperty(const xcb_property_notify_event_t& notify) {
    if (notify.window == X11::shared().root()) {
        if (notify.atom == managerCheck_) watchManager();
        if (notify.atom == managerCheck_ || notify.atom == clientList_) changed_();
        return;
    }
    if (notify.atom != windowState_) return;
    const auto client = std::ranges::find(clients_, notify.window, &ClientWindow::window);
    if (client == clients_.end()) return;
    const bool was = std::exchange(client->isMinimised, isMinimised(notify.window));
    if (was && !client->isMinimised) unhidden_();
}

std::vector<xcb_window_t> ClientWindows::windows() const {
    auto& x11 = X11::shared();
    if (manager_ != 0) return x11.property32(x11.root(), "_NET_CLIENT_LIST");
    std::vector<xcb_window_t> windows;
    for (const auto child : childrenOf(x11.root())) {
        const XReply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
            connection(), xcb_get_window_attributes(connection(), child), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        const auto framed = hasClass(child) ? std::nullopt : framedIn(child);
        if (framed)
            windows.push_back(*framed);
        else if (attributes->override_redirect == 0)
            windows.push_back(child);
    }
    return windows;
}

void ClientWindows::read() {
    const auto before = std::exchange(clients_, {});
    for (const auto window : windows()) {
        const auto known = std::ranges::find(before, window, &ClientWindow::window);
        const auto client = known != before.end() ? *known : describe(window);
        // Skip this program's windows: they do not count as apps, and Qt selects their events.
        if (client.pid != 0 && client.pid != getpid()) clients_.push_back(client);
    }
    X11::shared().flush();
}

ClientWindow ClientWindows::describe(xcb_window_t window) const {
    ClientWindow client{.window = window, .pid = processOf(window)};
    if (client.pid == 0 || client.pid == getpid()) return client;
    auto& x11 = X11::shared();
    const std::uint32_t mask =
        XCB_EVENT_MASK_PROPERTY_CHANGE | (manager_ == 0 ? XCB_EVENT_MASK_FOCUS_CHANGE : 0);
    xcb_change_window_attributes(connection(), window, XCB_CW_EVENT_MASK, &mask);
    client.isMinimised = isMinimised(window);
    for (const auto type : x11.property32(window, "_NET_WM_WINDOW_TYPE")) {
        if (std::ranges::any_of(desktopTypes, [&](auto name) { return x11.atom(name) == type; }))
            client.isOrdinary = false;
    }
    return client;
}

std::vector<xcb_window_t> ClientWindows::of(std::int64_t pid) const {
    std::vector<xcb_window_t> windows;
    for (const auto& client : clients_) {
        if (client.pid == pid && client.isOrdinary) windows.push_back(client.window);
    }
    return windows;
}

void ClientWindows::forget(std::int64_t pid) {
    std::erase_if(clients_, [pid](const auto& client) { return client.pid == pid; });
}

void ClientWindows::minimise(xcb_window_t window) {
    if (manager_ != 0)
        WindowManager::request(window, "WM_CHANGE_STATE", {iconicState});
    else
        xcb_unmap_window(connection(), window);
    X11::shared().flush();
}

void ClientWindows::restore(xcb_window_t window) {
    // Mapping a window restores it from the minimised state, also with a window manager.
    xcb_map_window(connection(), window);
    X11::shared().flush();
}

}  // namespace OrvelSystem
