#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace OrvelSystem {

/// Running processes by the file that they run, symbolic links resolved on both sides. A process
/// whose file the user may not read is passed over.
struct ProcessList {
    static bool isRunning(const std::filesystem::path& executable);
    /// Process ids in no particular order.
    static std::vector<std::int64_t> running(const std::filesystem::path& executable);
};

}  // namespace OrvelSystem
