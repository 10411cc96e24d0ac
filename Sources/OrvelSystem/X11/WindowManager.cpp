#include "OrvelSystem/X11/WindowManager.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem::WindowManager {

xcb_window_t proof() {
    constexpr std::string_view property = "_NET_SUPPORTING_WM_CHECK";
    auto& x11 = X11::shared();
    const auto window = x11.property32(x11.root(), property, 1);
    if (window.empty()) return 0;
    // A running window manager sets the same property on this window.
    return x11.property32(window.front(), property, 1) == window ? window.front() : 0;
}

std::string name() {
    const auto window = proof();
    if (window == 0) return {};
    auto& x11 = X11::shared();
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x11.connection(),
        xcb_get_property(x11.connection(), 0, window, x11.atom("_NET_WM_NAME"),
                         XCB_GET_PROPERTY_TYPE_ANY, 0, 64),
        nullptr));
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

bool drawsPanelsInFront() {
    static constexpr std::array<std::string_view, 5> names{"KWin", "Metacity", "Marco", "Mutter",
                                                           "GNOME Shell"};
    const auto& x11 = X11::shared();
    if (!isComposited(x11.connection(), x11.screenNumber())) return false;
    const auto running = name();
    return std::ranges::any_of(names,
                               [&](std::string_view known) { return running.starts_with(known); });
}

void request(xcb_window_t window, std::string_view type,
             std::initializer_list<std::uint32_t> data) {
    auto& x11 = X11::shared();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = x11.atom(type);
    std::copy_n(data.begin(), std::min(data.size(), std::size(message.data.data32)),
                message.data.data32);
    xcb_send_event(x11.connection(), 0, x11.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    x11.flush();
}

}  // namespace OrvelSystem::WindowManager
