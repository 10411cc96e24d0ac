#pragma once

#include <expected>
#include <string>
#include <system_error>
#include <vector>

#include <sys/types.h>

namespace OrvelSystem {

using Arguments = std::vector<std::string>;

/// If this variable is set when the application object is made, Qt gives a window with
/// `Qt::BypassWindowManagerHint` no role on Wayland. Programs that this one starts do not inherit
/// it.
inline constexpr char rolelessVariable[] = "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT";

/// Starts a program detached from this process: in its own session, with default signal handling,
/// with /dev/null as standard input, and with the system as its parent. The first argument is
/// looked up in `PATH`. Returns the process ID, or the error if the program could not be started.
std::expected<pid_t, std::error_code> spawnDetached(const Arguments& arguments);

/// Runs a program, discards its output, waits for its end and returns its exit status; -1 if a
/// signal ended it. Blocks.
std::expected<int, std::error_code> runToEnd(const Arguments& arguments);

}  // namespace OrvelSystem
