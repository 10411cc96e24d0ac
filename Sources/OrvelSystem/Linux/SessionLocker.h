#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OrvelSystem/Linux/Spawn.h"

namespace OrvelSystem {

/// The screen locker of the session's desktop.
struct SessionLocker {
    /// Whether a running program locks this session when logind asks for it. Reads the processes
    /// and the names on the session bus once, which takes a few milliseconds; starts no service.
    /// False if neither can be read.
    static bool isKnown();
    /// The command that locks a Wayland session: the one that swayidle runs when logind asks for a
    /// lock, or swaylock if that is installed. `nullopt` without either, in an X11 session, and if
    /// `isKnown`.
    static std::optional<Arguments> command();
    /// Whether `MacOSLock` has something to ask.
    static bool isAvailable();

    /// `processName` is the name as the kernel truncates it.
    static bool isLocker(std::string_view processName);
    /// Whether the bus name is one that a desktop's locker owns.
    static bool isLockerService(std::string_view busName);
    /// What swayidle runs when logind asks for a lock. `commandLine` is the contents of
    /// `/proc/<pid>/cmdline`, and `config` that of its file of settings.
    static std::optional<std::string> swayidleCommand(std::string_view commandLine,
                                                      std::string_view config);
    /// Whether a process with this environment (the contents of `/proc/<pid>/environ`) may belong
    /// to the display `display`. True unless the environment names another display.
    static bool sharesDisplay(std::string_view environment, std::string_view display);
};

}  // namespace OrvelSystem
