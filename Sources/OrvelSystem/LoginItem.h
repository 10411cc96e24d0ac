#pragma once

#include <system_error>

namespace OrvelSystem {

/// The setting that starts this program when the user logs in. Main thread only.
struct LoginItem {
    /// Argument with which the session or the guard starts the program; a user's own start has
    /// none.
    static constexpr const char* argument = "--login-item";

    /// Whether the system will start the program, even if the setting was made outside the program.
    static bool isEnabled();
    /// Returns the reason if it fails.
    static std::error_code registerItem();
    /// No error if it was not registered.
    static std::error_code unregisterItem();
};

}  // namespace OrvelSystem
