#pragma once

#include <filesystem>
#include <functional>

namespace OrvelCore {

/// The folder of the program's state: the marker of a running lock and the attempt log. The path is
/// absolute; the folder need not exist.
std::filesystem::path dataFolder();
/// The same for a process with a different environment. `variable` returns the value of an
/// environment variable, or null if it is not set.
std::filesystem::path dataFolder(const std::function<const char*(const char*)>& variable);
/// The folder of the settings. The path is absolute; the folder need not exist.
std::filesystem::path configFolder();

}  // namespace OrvelCore
