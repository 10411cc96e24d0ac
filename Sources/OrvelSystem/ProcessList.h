#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace OrvelSystem {

/// The executable file of a process. Since the process started, the file may have been deleted, or
/// replaced by another one, as an update does.
struct ProgramFile {
    enum class State { current, replaced, gone };

    /// The path at which the file is or was, absolute and without symbolic links.
    std::filesystem::path path;
    State state = State::current;

    /// The file of this process. Its path is empty if the system does not provide it.
    static ProgramFile own();
};

/// Running processes by their executable file. Symbolic links are resolved on both sides. Processes
/// whose file the user may not read are skipped.
struct ProcessList {
    static bool isRunning(const std::filesystem::path& executable);
    /// Process IDs in no particular order.
    static std::vector<std::int64_t> running(const std::filesystem::path& executable);
    /// Those of `running` whose file is no longer the one at that path. Always empty on macOS.
    static std::vector<std::int64_t> outdated(const std::filesystem::path& executable);
};

}  // namespace OrvelSystem
