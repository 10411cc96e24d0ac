#pragma once

#include <cstdint>
#include <optional>

/// Whether the program may quit.
namespace OrvelCore::QuitPolicy {

enum class Reason { user, logOut, restart, shutDown };

/// `appLocks` is the number of locked apps.
bool mayQuit(int appLocks, bool macLocked, Reason reason);
/// Decodes the four-character code in which macOS gives its reason to quit the program. An unknown
/// code counts as the user's request, so locks can refuse it.
Reason reason(std::optional<std::uint32_t> fromQuitCode);

}  // namespace OrvelCore::QuitPolicy
