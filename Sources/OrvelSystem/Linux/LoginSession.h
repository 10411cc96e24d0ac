#pragma once

#include <optional>
#include <string>

namespace OrvelSystem {

struct LoginSession {
    /// The id by which logind knows the graphical session that this process belongs to: what the
    /// environment says, else the session of the process, else the user's display session, as a
    /// service of the user manager belongs to none. Nothing when there is none.
    static std::optional<std::string> current();
};

}  // namespace OrvelSystem
