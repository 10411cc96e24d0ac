#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "OrvelSystem/X11/XServerAnswer.h"

namespace OrvelSystem {

/// The window system of the session that this program was started in.
enum class SessionKind { x11, wayland };

/// What the environment names, and what answers there.
struct SessionSockets {
    /// A compositor accepts connections where `WAYLAND_DISPLAY` points to.
    bool compositorAnswers = false;
    /// `XDG_SESSION_TYPE`; empty where it is not set.
    std::string_view sessionType;
    /// Called only where the rest leaves the answer open: a connection may start an X server.
    std::function<XServerAnswer()> xServer;
};

/// Nothing where neither answers, or only an X server whose windows are not all of the session's.
/// Where both a compositor and a whole X server answer, one of them is a window of the other, and
/// the session's own type tells which.
std::optional<SessionKind> sessionKind(const SessionSockets& sockets);

/// Of this process's environment. Otherwise one sentence for the user that says what is missing. To
/// be asked before Qt starts, which would abort.
std::expected<SessionKind, std::string> currentSession();

}  // namespace OrvelSystem
