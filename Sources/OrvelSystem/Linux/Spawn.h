#pragma once

#include <expected>
#include <string>
#include <system_error>
#include <vector>

#include <sys/types.h>

namespace OrvelSystem {

using Arguments = std::vector<std::string>;

/// Qt gives a window with `Qt::BypassWindowManagerHint` no role on Wayland where this variable is
/// set when the application is made. That is for this program alone: what it starts does not get
/// it.
inline constexpr char rolelessVariable[] = "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT";

/// Starts a program that is nobody's child: in a session of its own, with default signals, without
/// this process's terminal input, and reaped by the system. The first argument is looked up in the
/// `PATH`. Gives its process id.
std::expected<pid_t, std::error_code> spawnDetached(const Arguments& arguments);

/// Runs a program to its end with its output thrown away, and gives its exit status; -1 when a
/// signal ended it. Blocks.
std::expected<int, std::error_code> runToEnd(const Arguments& arguments);

}  // namespace OrvelSystem
