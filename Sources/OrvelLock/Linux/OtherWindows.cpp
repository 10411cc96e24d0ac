#include "OrvelLock/Linux/OtherWindows.h"

#include <xcb/composite.h>

#include "OrvelBlur/Linux/PanelStack.h"

namespace OrvelLock {

using OrvelBlur::PanelStack;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

xcb_connection_t* connection() {
    return X11::shared().connection();
}

bool canHide() {
    const auto* const composite = xcb_get_extension_data(connection(), &xcb_composite_id);
    return composite && composite->present;
}

bool isOwn(xcb_window_t window) {
    const auto* const setup = xcb_get_setup(connection());
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

}  // namespace

void OtherWindows::hide() {
    if (events_) return revealOwned();
    if (!canHide()) return;
    X11::shared().selectOnRoot(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
    const auto root = X11::shared().root();
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection(), xcb_query_tree(connection(), root), nullptr));
    if (!tree) return;
    const auto* const first = xcb_query_tree_children(tree.get());
    const auto* const end = first + xcb_query_tree_children_length(tree.get());
    for (const auto* at = first; at != end; ++at) hide(*at);
    X11::shared().flush();
}

void OtherWindows::show() {
    if (!events_) return;
    events_.reset();
    for (const xcb_window_t window : hidden_) reveal(window);
    hidden_.clear();
    X11::shared().flush();
}

void OtherWindows::hide(xcb_window_t window) {
    if (isOwn(window) || PanelStack::shared().owns(window) || !hidden_.insert(window).second)
        return;
    xcb_composite_redirect_window(connection(), window, XCB_COMPOSITE_REDIRECT_MANUAL);
}

/// What became a part of the lock only after it had come, as the stand-in of a new guard does.
void OtherWindows::revealOwned() {
    std::erase_if(hidden_, [this](xcb_window_t window) {
        if (!PanelStack::shared().owns(window)) return false;
        reveal(window);
        return true;
    });
}

void OtherWindows::reveal(xcb_window_t window) {
    xcb_composite_unredirect_window(connection(), window, XCB_COMPOSITE_REDIRECT_MANUAL);
}

void OtherWindows::handle(const xcb_generic_event_t& event) {
    const auto root = X11::shared().root();
    switch (event.response_type & 0x7F) {
        case XCB_CREATE_NOTIFY: {
            const auto& create = reinterpret_cast<const xcb_create_notify_event_t&>(event);
            if (create.parent == root) hide(create.window);
            break;
        }
        case XCB_MAP_NOTIFY: {
            const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
            if (map.event == root) hide(map.window);
            break;
        }
        case XCB_REPARENT_NOTIFY: {
            const auto& reparent = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
            if (reparent.event != root) break;
            if (reparent.parent == root)
                hide(reparent.window);
            else if (hidden_.erase(reparent.window) > 0)
                reveal(reparent.window);  // It is in a frame now, which is hidden itself.
            break;
        }
        case XCB_DESTROY_NOTIFY:
            hidden_.erase(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
            break;
        default:
            break;
    }
    X11::shared().flush();
}

}  // namespace OrvelLock
