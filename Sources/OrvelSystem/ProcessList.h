#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace OrvelSystem {

/// The file that a process runs. It may have gone since the start, and another one may have come in
/// its place, which is what an update does.
struct ProgramFile {
    enum class State { current, replaced, gone };

    /// Where it lies, or lay; absolute and without links.
    std::filesystem::path path;
    State state = State::current;

    /// This process's. Its path is empty when the system does not say.
    static ProgramFile own();
};

/// Running processes by the file that they run, symbolic links resolved on both sides. A process
/// whose file the user may not read is passed over.
struct ProcessList {
    static bool isRunning(const std::filesystem::path& executable);
    /// Process ids in no particular order.
    static std::vector<std::int64_t> running(const std::filesystem::path& executable);
    /// Those of `running` whose file is no longer the one at that path.
    static std::vector<std::int64_t> outdated(const std::filesystem::path& executable);
};

}  // namespace OrvelSystem
