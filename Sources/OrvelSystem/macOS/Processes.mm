#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>

#import <Foundation/Foundation.h>
#include <libproc.h>
#include <sys/stat.h>
#include <unistd.h>

#include "OrvelSystem/ProcessList.h"

namespace OrvelSystem {

namespace {

using std::filesystem::path;

/// Returns the path unchanged if it cannot be resolved.
path resolved(const path& file) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(file.c_str(), nullptr),
                                                           &std::free);
    return real ? path(real.get()) : file;
}

struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    bool operator==(const FileIdentity&) const = default;
};

FileIdentity identity(const struct stat& status) {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
}

struct OwnFile {
    path file;
    FileIdentity identity;
};

/// The file as it was at the first call, which the app makes at launch.
const OwnFile& ownFile() {
    static const OwnFile own = [] {
        @autoreleasepool {
            const char* const text = NSBundle.mainBundle.executablePath.fileSystemRepresentation;
            OwnFile found{resolved(text ? text : ""), {}};
            struct stat status {};
            if (::stat(found.file.c_str(), &status) == 0) found.identity = identity(status);
            return found;
        }
    }();
    return own;
}

}  // namespace

ProgramFile ProgramFile::own() {
    const auto& own = ownFile();
    struct stat status {};
    if (::stat(own.file.c_str(), &status) != 0)
        return {own.file, errno == ENOENT ? State::gone : State::current};
    const FileIdentity now = identity(status);
    return {own.file, now == own.identity ? State::current : State::replaced};
}

std::vector<std::int64_t> ProcessList::running(const path& executable) {
    const path wanted = resolved(executable);
    const int count = proc_listallpids(nullptr, 0);
    if (count < 1) return {};
    // Leave room for processes that start between the two calls.
    std::vector<int> pids(static_cast<std::size_t>(count) + 64);
    const int listed = proc_listallpids(pids.data(), static_cast<int>(pids.size() * sizeof(int)));
    if (listed < 1) return {};
    pids.resize(static_cast<std::size_t>(listed));
    std::vector<std::int64_t> found;
    std::array<char, 4096> buffer{};
    for (const int pid : pids) {
        if (pid <= 0 || proc_pidpath(pid, buffer.data(), buffer.size()) <= 0) continue;
        if (resolved(buffer.data()) == wanted) found.push_back(pid);
    }
    return found;
}

// A process keeps its path when its bundle is replaced, and the system does not report the path of
// a deleted file, so outdated processes cannot be found.
std::vector<std::int64_t> ProcessList::outdated(const path&) {
    return {};
}

}  // namespace OrvelSystem
