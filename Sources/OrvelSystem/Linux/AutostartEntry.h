#pragma once

#include <filesystem>
#include <string>

/// The desktop entry that makes a session start this program, for `LoginItem`.
namespace OrvelSystem::AutostartEntry {

/// The file in the user's autostart folder. It need not exist.
std::filesystem::path file();
/// The text of an entry for a program at this path.
std::string text(const std::filesystem::path& program);

}  // namespace OrvelSystem::AutostartEntry
