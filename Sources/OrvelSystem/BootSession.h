#pragma once

#include <string>

namespace OrvelSystem {

struct BootSession {
    /// An identifier that changes with each boot, or "unknown" if the system does not provide one.
    static std::string current();
};

}  // namespace OrvelSystem
