#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace OrvelSystem {

/// The crash guard as a service of the user's session. `registerService`, `unregisterService` and
/// `kickstart` wait for other programs: never on the main thread.
struct GuardService {
    /// The guard's file, beside this program's own. Absolute; it need not exist.
    static std::filesystem::path executable();

    /// Whether the system will keep a guard for this user. Cheap, for any thread.
    static bool isEnabled();
    /// Makes `isEnabled` true, for later logins as well. The error says why it could not.
    static std::error_code registerService();
    /// Ends the guard and keeps it from starting at the next login. Failures are ignored.
    static void unregisterService();

    /// Has a guard running, and leaves one that runs already as it is. A failure is logged.
    static void kickstart();
    /// The same, but ends a guard whose file an update has replaced. Only while nothing is locked:
    /// such a guard may be what covers the screen.
    static void renew();
    /// What launchd's own tool is asked with, to the same end.
    static std::vector<std::string> kickstartArguments(std::uint32_t uid);
};

}  // namespace OrvelSystem
