#pragma once

#include <filesystem>
#include <functional>

namespace OrvelCore {

/// Where the program keeps its state: the marker of a running lock and the attempt log. Absolute;
/// it need not exist.
std::filesystem::path dataFolder();
/// The same for a process with another environment, by the value that `variable` gives for a name,
/// null for an unset one.
std::filesystem::path dataFolder(const std::function<const char*(const char*)>& variable);
/// Where the settings lie. Absolute; it need not exist.
std::filesystem::path configFolder();

}  // namespace OrvelCore
