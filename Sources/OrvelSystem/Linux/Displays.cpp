#include "OrvelSystem/Linux/Displays.h"

#include <algorithm>

#include <xcb/randr.h>

namespace OrvelSystem {

using OrvelCore::Rect;

namespace {

constexpr int closeWatchMilliseconds = 500;

bool contains(const Rect& outer, const Rect& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.maxX() <= outer.maxX() &&
           inner.maxY() <= outer.maxY();
}

}  // namespace

Displays& Displays::shared() {
    static Displays displays;
    return displays;
}

Displays::Displays() {
    const auto& x11 = X11::shared();
    auto* const connection = x11.connection();
    const auto* const extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) return;
    const XReply<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
        connection, xcb_randr_query_version(connection, 1, 5), nullptr));
    hasMonitors_ = version && (version->major_version > 1 || version->minor_version >= 5);
    xcb_randr_select_input(connection, x11.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    X11::shared().selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    x11.flush();
    known_ = list();
    const std::uint8_t first = extension->first_event;
    events_ = X11::shared().onEvent([this, first](const xcb_generic_event_t& event) {
        const int type = event.response_type & 0x7F;
        // Monitors defined by hand tell only by a root window that is configured.
        const bool resized = type == XCB_CONFIGURE_NOTIFY &&
                             reinterpret_cast<const xcb_configure_notify_event_t&>(event).window ==
                                 X11::shared().root();
        if (resized || type == first + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
            type == first + XCB_RANDR_NOTIFY)
            look();
    });
    QObject::connect(&poll_, &QTimer::timeout, [this] { look(); });
}

std::vector<Displays::Display> Displays::list() const {
    const auto& x11 = X11::shared();
    auto* const connection = x11.connection();
    std::vector<Display> displays;
    if (hasMonitors_) {
        const XReply<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(
            connection, xcb_randr_get_monitors(connection, x11.root(), 1), nullptr));
        if (reply) {
            auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get());
            for (; monitor.rem != 0; xcb_randr_monitor_info_next(&monitor)) {
                const auto& info = *monitor.data;
                const Display display{
                    info.name,
                    {static_cast<double>(info.x), static_cast<double>(info.y),
                     static_cast<double>(info.width), static_cast<double>(info.height)}};
                if (display.frame.isEmpty()) continue;
                const auto at = info.primary != 0 ? displays.begin() : displays.end();
                displays.insert(at, display);
            }
        }
    }
    std::vector<Display> distinct;
    for (const auto& display : displays) {
        const bool mirrors =
            std::any_of(displays.begin(), displays.end(), [&](const Display& other) {
                if (other == display || !contains(other.frame, display.frame)) return false;
                return other.frame != display.frame || other.id < display.id;
            });
        if (!mirrors) distinct.push_back(display);
    }
    if (distinct.empty()) {
        const XReply<xcb_get_geometry_reply_t> screen(
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, x11.root()), nullptr));
        if (screen) {
            distinct.push_back(
                {0,
                 {0, 0, static_cast<double>(screen->width), static_cast<double>(screen->height)}});
        }
    }
    return distinct;
}

std::shared_ptr<void> Displays::watchClosely() {
    if (auto watching = close_.lock()) return watching;
    poll_.start(closeWatchMilliseconds);
    // The token's only use is its end.
    std::shared_ptr<void> token(this,
                                [](void* self) { static_cast<Displays*>(self)->poll_.stop(); });
    close_ = token;
    return token;
}

void Displays::look() {
    auto now = list();
    if (now == known_) return;
    known_ = std::move(now);
    onChanged();
}

}  // namespace OrvelSystem
