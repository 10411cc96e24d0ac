#pragma once

#include <string_view>

namespace OrvelSystem {

/// The screen locker that a desktop brings along.
struct SessionLocker {
    /// Whether a program runs that locks this session when logind asks for it. One look at the
    /// processes and at the session bus, of a few milliseconds: it neither starts a service nor
    /// waits for one. False when neither can be read.
    static bool isKnown();

    /// Whether the process of that name, as the kernel cuts it, is such a program.
    static bool isLocker(std::string_view processName);
    /// Whether such a program owns that name on the session bus.
    static bool isLockerService(std::string_view busName);
    /// Whether a process with this environment, as the kernel gives it, may belong to the display
    /// `display`. True unless it names another one.
    static bool sharesDisplay(std::string_view environment, std::string_view display);
};

}  // namespace OrvelSystem
