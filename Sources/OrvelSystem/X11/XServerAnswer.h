#pragma once

namespace OrvelSystem {

/// The kind of server that answers at `DISPLAY`.
enum class XServerAnswer {
    none,
    xwayland,  ///< A window of a Wayland session.
    server,    ///< A server of its own.
};

/// Connects to the server at `DISPLAY`. `none` also if the variable is not set.
XServerAnswer askXServer();

}  // namespace OrvelSystem
