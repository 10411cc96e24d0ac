#include "OrvelSystem/Linux/UserLock.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/Brand.h"

namespace OrvelSystem {

namespace {

/// FNV-1a, which gives the same number for a folder in every process.
std::uint64_t hashOf(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return hash;
}

std::filesystem::path fileOf(std::string_view role) {
    return UserLock::runtimeFile(role, "lock");
}

struct flock wholeFile() {
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    return range;
}

}  // namespace

std::filesystem::path UserLock::runtimeFile(std::string_view role, std::string_view extension) {
    const auto data = OrvelCore::dataFolder();
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    const auto folder = runtime && *runtime == '/' ? std::filesystem::path(runtime) : data;
    return folder / fmt::format("{}-{}-{:016x}.{}", OrvelCore::Brand::slug, role,
                                hashOf(data.lexically_normal().string()), extension);
}

UserLock::UserLock(std::string_view role) {
    const auto path = fileOf(role);
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    file_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file_ < 0) return;
    auto range = wholeFile();
    isOurs_ = fcntl(file_, F_SETLK, &range) == 0 || (errno != EAGAIN && errno != EACCES);
}

UserLock::~UserLock() {
    if (file_ >= 0) close(file_);
}

bool UserLock::isHeld(std::string_view role) {
    const int file = open(fileOf(role).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0) return false;
    auto range = wholeFile();
    const bool isHeld = fcntl(file, F_GETLK, &range) == 0 && range.l_type != F_UNLCK;
    close(file);
    return isHeld;
}

}  // namespace OrvelSystem
