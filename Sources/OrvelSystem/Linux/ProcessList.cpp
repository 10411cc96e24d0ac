#include "OrvelSystem/ProcessList.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace OrvelSystem {

namespace {

std::filesystem::path resolved(const std::filesystem::path& path) {
    std::error_code error;
    auto real = std::filesystem::canonical(path, error);
    return error ? path : real;
}

std::optional<std::int64_t> processID(std::string_view name) {
    std::int64_t pid = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (error != std::errc() || end != name.data() + name.size() || pid <= 0) return {};
    return pid;
}

/// `nullopt` for a process that has ended or belongs to another user.
std::optional<ProgramFile> fileOf(const std::filesystem::path& process) {
    constexpr std::string_view deleted = " (deleted)";
    std::error_code error;
    const auto link = process / "exe";
    ProgramFile file{.path = std::filesystem::read_symlink(link, error)};
    if (file.path.empty()) return {};
    // The link still refers to the file itself after the file was renamed or deleted.
    if (std::filesystem::equivalent(link, file.path, error)) return file;
    if (auto path = file.path.string(); path.ends_with(deleted)) {
        path.resize(path.size() - deleted.size());
        file.path = std::move(path);
    }
    file.state = std::filesystem::exists(file.path, error) ? ProgramFile::State::replaced
                                                           : ProgramFile::State::gone;
    return file;
}

template <class Wanted>
std::vector<std::int64_t> processesOf(const std::filesystem::path& executable, Wanted isWanted) {
    const auto target = resolved(executable);
    std::vector<std::int64_t> found;
    std::error_code error;
    std::filesystem::directory_iterator at("/proc", error);
    // Processes start and end during the iteration. An error ends the list and keeps what was
    // found.
    for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
        const auto pid = processID(at->path().filename().native());
        if (!pid) continue;
        const auto file = fileOf(at->path());
        if (file && (file->path == target || resolved(file->path) == target) && isWanted(*file))
            found.push_back(*pid);
    }
    return found;
}

}  // namespace

ProgramFile ProgramFile::own() {
    return fileOf("/proc/self").value_or(ProgramFile{});
}

std::vector<std::int64_t> ProcessList::running(const std::filesystem::path& executable) {
    return processesOf(executable, [](const ProgramFile&) { return true; });
}

std::vector<std::int64_t> ProcessList::outdated(const std::filesystem::path& executable) {
    return processesOf(executable, [](const ProgramFile& file) {
        return file.state != ProgramFile::State::current;
    });
}

}  // namespace OrvelSystem
