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

/// What the environment variables say, and whether a server answers there.
struct SessionSockets {
    /// Whether a compositor accepts connections at `WAYLAND_DISPLAY`.
    bool compositorAnswers = false;
    /// `XDG_SESSION_TYPE`; empty if it is not set.
    std::string_view sessionType;
    /// Called only if the other fields do not decide, because a connection may start an X server.
    std::function<XServerAnswer()> xServer;
};

/// `nullopt` if neither answers, or only an X server that does not have all windows of the session.
/// If both a compositor and a full X server answer, one of them runs in a window of the other, and
/// the type of the session decides.
std::optional<SessionKind> sessionKind(const SessionSockets& sockets);

/// The session of this process's environment, or one sentence for the user that says what is
/// missing. Call it before Qt starts, which would abort.
std::expected<SessionKind, std::string> currentSession();

}  // namespace OrvelSystem
