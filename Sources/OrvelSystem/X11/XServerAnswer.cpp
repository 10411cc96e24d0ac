#include "OrvelSystem/X11/XServerAnswer.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace OrvelSystem {

namespace {

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

XServerAnswer askXServer() {
    const char* const display = std::getenv("DISPLAY");
    if (display == nullptr || *display == '\0') return XServerAnswer::none;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) return XServerAnswer::none;
    return isInWayland(connection.get()) ? XServerAnswer::xwayland : XServerAnswer::server;
}

}  // namespace OrvelSystem
