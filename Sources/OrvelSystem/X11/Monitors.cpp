#include "OrvelSystem/X11/Monitors.h"

#include <algorithm>

#include <xcb/randr.h>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

using OrvelCore::Rect;

namespace {

bool contains(const Rect& outer, const Rect& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.maxX() <= outer.maxX() &&
           inner.maxY() <= outer.maxY();
}

}  // namespace

bool hasMonitors(xcb_connection_t* connection) {
    const auto* const extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) return false;
    const XReply<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
        connection, xcb_randr_query_version(connection, 1, 5), nullptr));
    return version && (version->major_version > 1 || version->minor_version >= 5);
}

std::vector<Monitor> readMonitors(xcb_connection_t* connection, xcb_window_t root,
                                  bool hasMonitors) {
    std::vector<Monitor> monitors;
    if (hasMonitors) {
        const XReply<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(
            connection, xcb_randr_get_monitors(connection, root, 1), nullptr));
        if (reply) {
            auto entry = xcb_randr_get_monitors_monitors_iterator(reply.get());
            for (; entry.rem != 0; xcb_randr_monitor_info_next(&entry)) {
                const auto& info = *entry.data;
                const Monitor monitor{
                    info.name,
                    {static_cast<double>(info.x), static_cast<double>(info.y),
                     static_cast<double>(info.width), static_cast<double>(info.height)}};
                if (monitor.frame.isEmpty()) continue;
                const auto at = info.primary != 0 ? monitors.begin() : monitors.end();
                monitors.insert(at, monitor);
            }
        }
    }
    std::vector<Monitor> distinct;
    for (const auto& monitor : monitors) {
        const bool mirrors =
            std::any_of(monitors.begin(), monitors.end(), [&](const Monitor& other) {
                if (other == monitor || !contains(other.frame, monitor.frame)) return false;
                return other.frame != monitor.frame || other.id < monitor.id;
            });
        if (!mirrors) distinct.push_back(monitor);
    }
    if (distinct.empty()) {
        const XReply<xcb_get_geometry_reply_t> screen(
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr));
        if (screen) {
            distinct.push_back(
                {0,
                 {0, 0, static_cast<double>(screen->width), static_cast<double>(screen->height)}});
        }
    }
    return distinct;
}

}  // namespace OrvelSystem
