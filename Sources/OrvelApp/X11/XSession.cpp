#include "OrvelApp/X11/XSession.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include <fmt/format.h>
#include <xcb/randr.h>
#include <xcb/xcb.h>

#include "OrvelCore/Brand.h"

namespace OrvelApp {

using OrvelCore::Brand::name;

namespace {

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

template <class T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

bool hasExtension(xcb_connection_t* connection, std::string_view extension) {
    const auto cookie = xcb_query_extension(
        connection, static_cast<std::uint16_t>(extension.size()), extension.data());
    const Reply<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(connection, cookie, nullptr), &std::free);
    return reply && reply->present != 0;
}

/// Whether the X server runs inside a Wayland session. Newer servers have an extension for this;
/// older ones are recognised by the names of their outputs.
bool isInWayland(xcb_connection_t* connection) {
    if (hasExtension(connection, "XWAYLAND")) return true;
    if (!hasExtension(connection, "RANDR")) return false;
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            connection, xcb_randr_get_screen_resources_current(connection, root), nullptr),
        &std::free);
    if (!resources) return false;
    const auto* const outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    for (int i = 0; i < resources->num_outputs; ++i) {
        const Reply<xcb_randr_get_output_info_reply_t> output(
            xcb_randr_get_output_info_reply(
                connection,
                xcb_randr_get_output_info(connection, outputs[i], resources->config_timestamp),
                nullptr),
            &std::free);
        if (!output) continue;
        const std::string_view name(
            reinterpret_cast<const char*>(xcb_randr_get_output_info_name(output.get())),
            static_cast<std::size_t>(xcb_randr_get_output_info_name_length(output.get())));
        if (name.starts_with("XWAYLAND")) return true;
    }
    return false;
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
    // Covers would hide only X11 windows, which would not be a lock.
    if (isInWayland(connection.get()))
        return fmt::format(
            "{} needs an X11 session: behind this X server is a Wayland session, whose windows "
            "it could not cover.",
            name);
    return {};
}

}  // namespace OrvelApp
