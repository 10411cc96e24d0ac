#pragma once

#include <string>

namespace OrvelSystem {

/// Speaks announcements through the screen reader.
struct Announcer {
    /// Interrupts the screen reader. If a second announcement arrives before the first is spoken,
    /// only the second is spoken. Returns at once, and does nothing while no screen reader is on.
    /// Main thread only.
    static void announce(const std::string& text);
};

}  // namespace OrvelSystem
