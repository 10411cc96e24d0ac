#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace OrvelSystem {

/// Whether the session starts this program when the user logs in. Main thread only.
struct LoginItem {
    /// What the program is started with by whoever is not the user: the session, or the guard.
    static constexpr const char* argument = "--login-item";

    /// What the system will do, whoever decided it.
    static bool isEnabled();
    static std::error_code registerItem();
    /// No error when it was not registered.
    static std::error_code unregisterItem();

    /// Of Linux: the entry in the user's folder of programs to start. It need not exist.
    static std::filesystem::path file();
    /// Of Linux: the text of that entry for a program at this path.
    static std::string entry(const std::filesystem::path& program);
};

}  // namespace OrvelSystem
