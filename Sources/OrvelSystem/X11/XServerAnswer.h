#pragma once

namespace OrvelSystem {

/// What answers where `DISPLAY` points to.
enum class XServerAnswer {
    none,
    xwayland,  ///< A window of a Wayland session.
    server,    ///< A server of its own.
};

/// Connects to the server of `DISPLAY` and asks it. `none` also where the variable is not set.
XServerAnswer askXServer();

}  // namespace OrvelSystem
