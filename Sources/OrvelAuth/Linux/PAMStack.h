#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvelAuth {

/// The folders in which PAM looks for the stack of a service; the first match applies.
inline const std::vector<std::filesystem::path> pamFolders = {"/etc/pam.d", "/usr/lib/pam.d"};

/// The service whose stack checks passwords: the program's own if it is installed, else that of a
/// login, which every system has.
std::string pamService(const std::vector<std::filesystem::path>& folders = pamFolders);

/// A line of a stack that uses a module.
struct PAMUse {
    /// The control field without brackets, such as "required" or "success=1 default=ignore".
    std::string control;
    /// The module's file name without its folder, such as "pam_unix.so".
    std::string module;
    std::vector<std::string> arguments;

    bool operator==(const PAMUse&) const = default;
};

/// The modules that `pamService` uses, in order, including those of included files. A file that is
/// included several times is read once. Unreadable files count as empty.
struct PAMStack {
    /// The modules that check the password.
    std::vector<PAMUse> authentication;
    /// The modules that check whether the account may be used.
    std::vector<PAMUse> account;

    static PAMStack read(const std::vector<std::filesystem::path>& folders = pamFolders);

    bool operator==(const PAMStack&) const = default;
};

/// The text formats that PAM and its modules share.
namespace PAMText {

/// Removes whitespace from both ends.
std::string_view trimmed(std::string_view text);
/// Calls `handle` for every line, without its comment and surrounding whitespace. A backslash at
/// the end of a line joins it with the next one.
void forEachLine(std::string_view text, const std::function<void(std::string_view line)>& handle);

}  // namespace PAMText

}  // namespace OrvelAuth
