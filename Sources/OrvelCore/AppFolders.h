#pragma once

#include <filesystem>

namespace OrvelCore {

/// Where the program keeps its state: the marker of a running lock and the attempt log. Absolute;
/// it need not exist.
std::filesystem::path dataFolder();
/// Where the settings lie. Absolute; it need not exist.
std::filesystem::path configFolder();

}  // namespace OrvelCore
