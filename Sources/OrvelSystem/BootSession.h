#pragma once

#include <string>

namespace OrvelSystem {

struct BootSession {
    /// Identity of the running boot, another after each; "unknown" when the system does not tell.
    static std::string current();
};

}  // namespace OrvelSystem
