#include "OrvelSystem/Linux/LoginSession.h"

#include <cstdlib>
#include <memory>

#include <systemd/sd-login.h>
#include <unistd.h>

namespace OrvelSystem {

namespace {

// A terminal multiplexer carries the variable on when its session is long gone. Where logind has
// no public record of any session, nothing can be compared and the variable is taken at its word.
bool isStale(const std::string& session) {
    uid_t owner = 0;
    if (sd_get_sessions(nullptr) <= 0) return false;
    return sd_session_get_uid(session.c_str(), &owner) < 0 || owner != getuid();
}

std::optional<std::string> taken(int result, char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owned(text, std::free);
    return result < 0 || !text ? std::nullopt : std::optional<std::string>(text);
}

}  // namespace

std::optional<std::string> LoginSession::current() {
    const char* const named = std::getenv("XDG_SESSION_ID");
    if (named && *named && !isStale(named)) return named;
    char* text = nullptr;
    int result = sd_pid_get_session(0, &text);
    if (auto session = taken(result, text)) return session;
    text = nullptr;
    result = sd_uid_get_display(getuid(), &text);
    return taken(result, text);
}

}  // namespace OrvelSystem
