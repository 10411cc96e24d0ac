#include "OrvelSystem/Linux/LoginSession.h"

#include <cstdlib>
#include <memory>

#include <systemd/sd-login.h>
#include <unistd.h>

namespace OrvelSystem {

namespace {

std::optional<std::string> taken(int result, char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owned(text, std::free);
    return result < 0 || !text ? std::nullopt : std::optional<std::string>(text);
}

}  // namespace

LoginSession::Records LoginSession::Records::live() {
    return {.sessions = [] { return sd_get_sessions(nullptr); },
            .owner = [](const std::string& session) -> std::optional<uid_t> {
                uid_t owner = 0;
                if (sd_session_get_uid(session.c_str(), &owner) < 0) return {};
                return owner;
            },
            .ofProcess =
                [] {
                    char* text = nullptr;
                    const int result = sd_pid_get_session(0, &text);
                    return taken(result, text);
                },
            .ofDisplay =
                [] {
                    char* text = nullptr;
                    const int result = sd_uid_get_display(getuid(), &text);
                    return taken(result, text);
                }};
}

std::optional<std::string> LoginSession::current() {
    return chosen(std::getenv("XDG_SESSION_ID"), getuid(), Records::live());
}

std::optional<std::string> LoginSession::chosen(const char* named, uid_t user,
                                                const Records& records) {
    // A terminal multiplexer keeps the variable after its session has ended, so the session must
    // belong to this user. If logind has no public record of any session, nothing can be compared
    // and we trust the variable.
    if (named && *named && (records.sessions() <= 0 || records.owner(named) == user)) return named;
    if (auto session = records.ofProcess()) return session;
    return records.ofDisplay();
}

}  // namespace OrvelSystem
