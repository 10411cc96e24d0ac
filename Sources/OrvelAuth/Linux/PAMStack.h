#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvelAuth {

/// Where PAM looks for the stack of a service, the first hit winning.
inline const std::vector<std::filesystem::path> pamFolders = {"/etc/pam.d", "/usr/lib/pam.d"};

/// The service whose stack checks passwords: the product's own where it was installed, else that
/// of a login, which every system has.
std::string pamService(const std::vector<std::filesystem::path>& folders = pamFolders);

/// One line of a stack that uses a module.
struct PAMUse {
    /// As written, without the brackets, such as "required" or "success=1 default=ignore".
    std::string control;
    /// The file name of the module without its folder, such as "pam_unix.so".
    std::string module;
    std::vector<std::string> arguments;

    bool operator==(const PAMUse&) const = default;
};

/// The modules that `pamService` uses, in order, with those of the files that it includes. A file
/// that is included more than once is read once. Empty for what cannot be read.
struct PAMStack {
    /// What checks the password.
    std::vector<PAMUse> authentication;
    /// What checks whether the account may be used.
    std::vector<PAMUse> account;

    static PAMStack read(const std::vector<std::filesystem::path>& folders = pamFolders);

    bool operator==(const PAMStack&) const = default;
};

/// The text formats that PAM and its modules share.
namespace PAMText {

/// Without the blanks at both ends.
std::string_view trimmed(std::string_view text);
/// Every line without its comment and the blanks around it. A backslash at the end of a line joins
/// the next one to it.
void forEachLine(std::string_view text, const std::function<void(std::string_view line)>& handle);

}  // namespace PAMText

}  // namespace OrvelAuth
