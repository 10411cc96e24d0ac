#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace OrvelAuth {

/// Where PAM looks for the stack of a service, the first hit winning.
inline const std::vector<std::filesystem::path> pamFolders = {"/etc/pam.d", "/usr/lib/pam.d"};

/// The service whose stack checks passwords: the product's own where it was installed, else that
/// of a login, which every system has.
std::string pamService(const std::vector<std::filesystem::path>& folders = pamFolders);

}  // namespace OrvelAuth
