#pragma once

#include <string_view>

namespace OrvelSystem {

/// The screen locker of the session's desktop.
struct SessionLocker {
    /// Whether a running program locks this session when logind asks for it. Reads the processes
    /// and the names on the session bus once, which takes a few milliseconds; starts no service.
    /// False if neither can be read.
    static bool isKnown();

    /// `processName` is the name as the kernel truncates it.
    static bool isLocker(std::string_view processName);
    /// Whether the bus name is one that a desktop's locker owns.
    static bool isLockerService(std::string_view busName);
    /// Whether a process with this environment (the contents of `/proc/<pid>/environ`) may belong
    /// to the display `display`. True unless the environment names another display.
    static bool sharesDisplay(std::string_view environment, std::string_view display);
};

}  // namespace OrvelSystem
