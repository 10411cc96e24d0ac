#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace OrvelSystem {

/// The crash guard as a service of the user's session. `isEnabled` and `executable` aside,
/// the functions wait for other programs, so never call them on the main thread.
struct GuardService {
    /// The guard's executable file, in the same folder as this program's. The path is absolute; the
    /// file need not exist.
    static std::filesystem::path executable();

    /// Whether the system will keep a guard running for this user. Any thread.
    static bool isEnabled();
    /// Enables the guard for this session and later logins. Returns the reason if that fails.
    static std::error_code registerService();
    /// Ends the guard and keeps it from starting at the next login. Failures are ignored.
    static void unregisterService();

    /// Registers the guard if necessary, and starts it with `renew` or `kickstart`. Returns the
    /// reason if it cannot be registered.
    static std::error_code start(bool renews);

    /// Starts the guard if it is not running. A failure is logged.
    static void kickstart();
    /// Like `kickstart`, but first ends a guard whose executable an update has replaced; on macOS,
    /// any guard. Call it only while nothing is locked: the guard's stand-in may be what covers the
    /// screen.
    static void renew();
    /// The arguments of `launchctl` (macOS) that start the guard if it is not running.
    static std::vector<std::string> kickstartArguments(std::uint32_t uid);
};

}  // namespace OrvelSystem
