#pragma once

#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

namespace OrvelSystem {

struct LoginSession {
    /// The data that logind has about sessions.
    struct Records {
        /// The number of sessions; 0 or less if logind has no public record of any.
        std::function<int()> sessions;
        /// The owner of the session with that ID; `nullopt` if there is no such session.
        std::function<std::optional<uid_t>(const std::string& session)> owner;
        /// The session of this process and the user's display session; `nullopt` if there is none.
        std::function<std::optional<std::string>()> ofProcess;
        std::function<std::optional<std::string>()> ofDisplay;

        static Records live();
    };

    /// logind's ID of the graphical session of this process: the one that the environment names,
    /// else the session of the process, else the user's display session, since a service of the
    /// user manager belongs to no session. `nullopt` if there is none.
    static std::optional<std::string> current();
    /// The same for the given user. `named` is the value of `XDG_SESSION_ID`; null and empty mean
    /// that it is not set.
    static std::optional<std::string> chosen(const char* named, uid_t user, const Records& records);
};

}  // namespace OrvelSystem
