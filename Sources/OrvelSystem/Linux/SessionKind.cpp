#include "OrvelSystem/Linux/SessionKind.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <fmt/format.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "OrvelCore/Brand.h"

namespace OrvelSystem {

using OrvelCore::Brand::name;

namespace {

std::string_view variable(const char* variableName) {
    const char* const value = std::getenv(variableName);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

/// Connects without libwayland, which would take over an inherited connection.
bool compositorAnswers() {
    const auto display = variable("WAYLAND_DISPLAY");
    if (display.empty()) return false;
    const auto path = std::filesystem::path(variable("XDG_RUNTIME_DIR")) / display;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof(address.sun_path)) return false;
    std::memcpy(address.sun_path, path.c_str(), path.native().size());
    const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (file < 0) return false;
    const bool answers =
        connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    close(file);
    return answers;
}

std::string obstacle(XServerAnswer xServer) {
    // Covers would hide only X11 windows, which would not be a lock.
    if (xServer == XServerAnswer::xwayland)
        return fmt::format(
            "{} cannot protect this session: behind this X server is a Wayland session, and "
            "WAYLAND_DISPLAY does not lead to it.",
            name);
    if (const auto display = variable("WAYLAND_DISPLAY"); !display.empty())
        return fmt::format("{} cannot reach the Wayland compositor at {}.", name, display);
    if (const auto display = variable("DISPLAY"); !display.empty())
        return fmt::format("{} cannot reach the X server at {}.", name, display);
    return fmt::format(
        "{} needs an X11 or Wayland session: neither DISPLAY nor WAYLAND_DISPLAY is set.", name);
}

}  // namespace

std::optional<SessionKind> sessionKind(const SessionSockets& sockets) {
    if (sockets.compositorAnswers && sockets.sessionType == "wayland") return SessionKind::wayland;
    if (sockets.xServer() == XServerAnswer::server) return SessionKind::x11;
    return sockets.compositorAnswers ? std::optional(SessionKind::wayland) : std::nullopt;
}

std::expected<SessionKind, std::string> currentSession() {
    auto xServer = XServerAnswer::none;
    const auto kind = sessionKind({.compositorAnswers = compositorAnswers(),
                                   .sessionType = variable("XDG_SESSION_TYPE"),
                                   .xServer = [&xServer] { return xServer = askXServer(); }});
    if (!kind) return std::unexpected(obstacle(xServer));
    return *kind;
}

}  // namespace OrvelSystem
