#pragma once

#include <cstdint>
#include <optional>

/// Whether a quit may go ahead.
namespace OrvelCore::QuitPolicy {

enum class Reason { user, logOut, restart, shutDown };

/// `appLocks` is the number of locked apps.
bool mayQuit(int appLocks, bool macLocked, Reason reason);
/// From the four-character code that says why the system asks; an unknown one counts as the
/// user's own wish, and is therefore subject to the locks.
Reason reason(std::optional<std::uint32_t> fromQuitCode);

}  // namespace OrvelCore::QuitPolicy
