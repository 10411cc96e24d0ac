#pragma once

#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

namespace OrvelSystem {

struct LoginSession {
    /// What logind has on record.
    struct Records {
        /// How many sessions there are; 0 or less where it has no public record of any.
        std::function<int()> sessions;
        /// Of the session of that id; nothing when there is none.
        std::function<std::optional<uid_t>(const std::string& session)> owner;
        /// The sessions of this process and of the user's display; nothing for none.
        std::function<std::optional<std::string>()> ofProcess;
        std::function<std::optional<std::string>()> ofDisplay;

        static Records live();
    };

    /// The id by which logind knows the graphical session that this process belongs to: what the
    /// environment says, else the session of the process, else the user's display session, as a
    /// service of the user manager belongs to none. Nothing when there is none.
    static std::optional<std::string> current();
    /// The same for a user, with what the environment says; null or empty for nothing.
    static std::optional<std::string> chosen(const char* named, uid_t user, const Records& records);
};

}  // namespace OrvelSystem
