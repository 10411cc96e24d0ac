#include "OrvelCore/FileDescriptor.h"

#include <cerrno>
#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvelCore {

std::error_code lastSystemError() {
    return {errno, std::generic_category()};
}

FileDescriptor::~FileDescriptor() {
    if (isOpen()) ::close(descriptor_);
}

std::error_code FileDescriptor::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return lastSystemError();
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

std::error_code FileDescriptor::sync() const {
#ifdef F_FULLFSYNC
    // On macOS, fsync leaves the data in the disk's cache. Not every file system supports
    // F_FULLFSYNC.
    if (::fcntl(descriptor_, F_FULLFSYNC) == 0) return {};
#endif
    return ::fsync(descriptor_) == 0 ? std::error_code() : lastSystemError();
}

std::expected<std::string, std::error_code> FileDescriptor::readRegularFile(
    std::size_t limit) const {
    struct stat info {};
    if (::fstat(descriptor_, &info) != 0) return std::unexpected(lastSystemError());
    if (!S_ISREG(info.st_mode))
        return std::unexpected(std::make_error_code(std::errc::invalid_argument));
    const std::unexpected tooLarge(std::make_error_code(std::errc::file_too_large));
    if (static_cast<std::uintmax_t>(info.st_size) > limit) return tooLarge;
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(info.st_size));
    char block[16384];
    for (;;) {
        const ssize_t count = ::read(descriptor_, block, sizeof block);
        if (count == 0) return bytes;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::unexpected(lastSystemError());
        if (static_cast<std::size_t>(count) > limit - bytes.size()) return tooLarge;
        bytes.append(block, static_cast<std::size_t>(count));
    }
}

}  // namespace OrvelCore
