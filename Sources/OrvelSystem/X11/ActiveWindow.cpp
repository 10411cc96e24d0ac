#include "OrvelSystem/X11/ActiveWindow.h"

#include <QTimer>
#include <utility>

#include <unistd.h>
#include <xcb/res.h>

#include "OrvelSystem/X11/WindowManager.h"

namespace OrvelSystem {

namespace {

constexpr std::uint32_t sourcePager = 2;

bool isViewable(xcb_window_t window) {
    auto* const connection = X11::shared().connection();
    const XReply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// The window with the keyboard focus; 0 if the focus is None, PointerRoot or the root window.
xcb_window_t focusWindow() {
    auto* const connection = X11::shared().connection();
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    constexpr xcb_window_t pointerRoot = 1;
    const bool isWindow =
        reply && reply->focus > pointerRoot && reply->focus != X11::shared().root();
    return isWindow ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

std::int64_t focusOwner() {
    const auto window = focusWindow();
    return window == 0 ? 0 : processOf(window);
}

/// The child of the root that is or contains `window`; 0 if the window no longer exists.
xcb_window_t topLevelOf(xcb_window_t window) {
    auto* const connection = X11::shared().connection();
    while (window != 0) {
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
        if (tree && tree->parent == tree->root) return window;
        window = tree ? tree->parent : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    }
    return 0;
}

}  // namespace

std::int64_t processOf(xcb_window_t window) {
    auto& x11 = X11::shared();
    auto* const connection = x11.connection();
    const auto* const extension = xcb_get_extension_data(connection, &xcb_res_id);
    if (extension != nullptr && extension->present != 0) {
        const xcb_res_client_id_spec_t ask{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        const XReply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
            connection, xcb_res_query_client_ids(connection, 1, &ask), nullptr));
        if (reply) {
            auto id = xcb_res_query_client_ids_ids_iterator(reply.get());
            for (; id.rem != 0; xcb_res_client_id_value_next(&id)) {
                if ((id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
                    xcb_res_client_id_value_value_length(id.data) > 0)
                    return *xcb_res_client_id_value_value(id.data);
            }
        }
    }
    const auto told = x11.property32(window, "_NET_WM_PID", 1);
    return told.empty() ? 0 : told.front();
}

ActiveWindow& ActiveWindow::shared() {
    static ActiveWindow active;
    return active;
}

ActiveWindow::ActiveWindow() : property_(X11::shared().atom("_NET_ACTIVE_WINDOW")) {
    X11::shared().selectOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    events_ = X11::shared().onEvent([this](const xcb_generic_event_t& event) {
        if (event.response_type == XCB_FOCUS_OUT)
            return focusLost(reinterpret_cast<const xcb_focus_out_event_t&>(event));
        if (event.response_type != XCB_PROPERTY_NOTIFY) return;
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notify.window == X11::shared().root() && notify.atom == property_ && read()) announce();
    });
    read();
}

bool ActiveWindow::read() {
    const auto value = X11::shared().property32(X11::shared().root(), "_NET_ACTIVE_WINDOW", 1);
    xcb_window_t window = value.empty() ? 0 : value.front();
    xcb_window_t owned = window;
    // A crashed window manager leaves its last value in the property.
    if (!WindowManager::isThere()) {
        owned = focusWindow();
        window = topLevelOf(owned);
    }
    // The server may reuse the number of a destroyed window, so the process is compared too.
    const auto now = window == 0 ? std::nullopt : std::optional(App{processOf(owned), window});
    if (now == app_) return false;
    app_ = now;
    if (app_ && app_->pid != getpid()) lastOfOthers_ = window;
    return true;
}

void ActiveWindow::announce() {
    isToAnnounce_ = false;
    observers_.forEach([app = app_](const Observer& observer) {
        if (app)
            observer.changed(*app);
        else
            observer.none();
    });
}

// A window manager does not know this program's overlays. While an overlay has the keyboard, the
// manager's active window stays the same, and the manager reports nothing when the focus returns to
// it. So announce that window when an overlay loses the focus to it.
void ActiveWindow::focusLost(const xcb_focus_out_event_t& event) {
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB) return;
    if (event.detail == XCB_NOTIFY_DETAIL_INFERIOR) return;
    // Focus events of other programs' windows may be selected too; ignore them.
    const auto* const setup = xcb_get_setup(X11::shared().connection());
    if ((event.event & ~setup->resource_id_mask) != setup->resource_id_base) return;
    if (app_ && app_->pid != getpid() && focusOwner() == app_->pid) announce();
}

std::optional<ActiveWindow::App> ActiveWindow::current() {
    // The caller may be in a state in which it must not be called back.
    if (read() && !std::exchange(isToAnnounce_, true))
        QTimer::singleShot(0, [this] {
            if (isToAnnounce_) announce();
        });
    return app_;
}

std::optional<ActiveWindow::App> ActiveWindow::lastOfOthers() {
    if (lastOfOthers_ == 0 || !isViewable(lastOfOthers_)) return {};
    return App{processOf(lastOfOthers_), lastOfOthers_};
}

bool ActiveWindow::isOurs() const {
    return focusOwner() == getpid();
}

// Uses CurrentTime: the focus may have changed since the newest event that we received, and
// requests with a time before that change are ignored.
void ActiveWindow::activate(xcb_window_t window) {
    auto& x11 = X11::shared();
    auto* const connection = x11.connection();
    if (WindowManager::isThere()) {
        WindowManager::request(window, "_NET_ACTIVE_WINDOW", {sourcePager, XCB_CURRENT_TIME});
    } else {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_set_input_focus(connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    }
    x11.flush();
}

OrvelCore::Subscription ActiveWindow::observe(std::function<void(const App&)> changed,
                                              std::function<void()> none) {
    return observers_.add({std::move(changed), std::move(none)});
}

}  // namespace OrvelSystem
