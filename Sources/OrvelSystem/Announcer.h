#pragma once

#include <string>

namespace OrvelSystem {

/// Speaks to those who hear the interface.
struct Announcer {
    /// Interrupts what is being read; of two at once the later one counts. Returns at once and does
    /// nothing while no screen reader is on. Main thread only.
    static void announce(const std::string& text);
};

}  // namespace OrvelSystem
