#include "OrvelApp/Linux/XSession.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include <fmt/format.h>
#include <xcb/xcb.h>

#include "OrvelCore/Brand.h"

namespace OrvelApp {

using OrvelCore::Brand::name;

namespace {

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool hasExtension(xcb_connection_t* connection, std::string_view extension) {
    const auto cookie = xcb_query_extension(
        connection, static_cast<std::uint16_t>(extension.size()), extension.data());
    const std::unique_ptr<xcb_query_extension_reply_t, decltype(&std::free)> reply(
        xcb_query_extension_reply(connection, cookie, nullptr), &std::free);
    return reply && reply->present != 0;
}

}  // namespace

std::optional<std::string> obstacleInSession() {
    if (!isSet("DISPLAY")) {
        if (isSet("WAYLAND_DISPLAY"))
            return fmt::format(
                "{} needs an X11 session: in a Wayland session no program may cover the others.",
                name);
        return fmt::format("{} needs an X11 session: DISPLAY is not set.", name);
    }
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return fmt::format("{} cannot reach the X server at {}.", name, std::getenv("DISPLAY"));
    // Covers would hide only those windows that speak X11, and call that a lock.
    if (hasExtension(connection.get(), "XWAYLAND"))
        return fmt::format(
            "{} needs an X11 session: behind this X server is a Wayland session, whose windows "
            "it could not cover.",
            name);
    return {};
}

}  // namespace OrvelApp
