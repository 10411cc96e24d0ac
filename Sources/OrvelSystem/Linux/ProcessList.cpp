#include "OrvelSystem/ProcessList.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

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

// An update replaces the file under a running process, which then runs one without a name.
std::filesystem::path executableOf(const std::filesystem::path& process) {
    constexpr std::string_view deleted = " (deleted)";
    std::error_code error;
    auto path = std::filesystem::read_symlink(process / "exe", error).string();
    if (path.ends_with(deleted)) path.resize(path.size() - deleted.size());
    return path;
}

}  // namespace

std::vector<std::int64_t> ProcessList::running(const std::filesystem::path& executable) {
    const auto wanted = resolved(executable);
    std::vector<std::int64_t> found;
    std::error_code error;
    std::filesystem::directory_iterator at("/proc", error);
    // Processes come and go while they are listed, so an error ends the list and nothing else.
    for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
        const auto pid = processID(at->path().filename().native());
        if (!pid) continue;
        const auto path = executableOf(at->path());
        if (!path.empty() && (path == wanted || resolved(path) == wanted)) found.push_back(*pid);
    }
    return found;
}

}  // namespace OrvelSystem
