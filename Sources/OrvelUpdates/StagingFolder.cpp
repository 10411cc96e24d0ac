#include "OrvelUpdates/StagingFolder.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvelUpdates {

namespace {

using OrvelCore::FileDescriptor;
using OrvelCore::lastSystemError;

constexpr int asFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr mode_t othersMayWrite = S_IWGRP | S_IWOTH;

std::unexpected<std::error_code> refused() {
    return std::unexpected(std::make_error_code(std::errc::permission_denied));
}

std::optional<struct stat> statusOf(const FileDescriptor& file) {
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) return {};
    return status;
}

bool isOwn(const struct stat& status) {
    return status.st_uid == ::geteuid();
}

}  // namespace

std::expected<StagingFolder, std::error_code> StagingFolder::open(
    const std::filesystem::path& folder, Missing missing) {
    std::error_code error;
    if (missing == Missing::isMade)
        std::filesystem::create_directories(folder.parent_path(), error);
    if (error) return std::unexpected(error);
    // Users move folders to another disk and leave a symbolic link, so follow it; the checks apply
    // to its target.
    const FileDescriptor parent(::open(folder.parent_path().c_str(), asFolder));
    if (!parent.isOpen()) return std::unexpected(lastSystemError());
    // A user who can write to the parent folder could replace this folder.
    const auto around = statusOf(parent);
    if (!around || !isOwn(*around)) return refused();
    if (::fchmod(parent.get(), around->st_mode & ~othersMayWrite & ALLPERMS) != 0)
        return std::unexpected(lastSystemError());

    const auto name = folder.filename();
    if (missing == Missing::isMade && ::mkdirat(parent.get(), name.c_str(), S_IRWXU) != 0 &&
        errno != EEXIST)
        return std::unexpected(lastSystemError());
    FileDescriptor own(::openat(parent.get(), name.c_str(), asFolder | O_NOFOLLOW));
    if (!own.isOpen()) return std::unexpected(lastSystemError());
    const auto status = statusOf(own);
    if (!status || !isOwn(*status)) return refused();
    if (::fchmod(own.get(), S_IRWXU) != 0) return std::unexpected(lastSystemError());
    return StagingFolder(std::move(own));
}

std::expected<void, std::error_code> StagingFolder::write(const std::string& name,
                                                          std::string_view bytes) const {
    // Checks may overlap, so each file needs a unique name until it is complete.
    static std::atomic<unsigned> count = 0;
    const auto temporary = fmt::format(".{}-{}.part", ::getpid(), ++count);
    ::unlinkat(folder_.get(), temporary.c_str(), 0);
    const FileDescriptor out(::openat(folder_.get(), temporary.c_str(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                      S_IRUSR | S_IWUSR));
    if (!out.isOpen()) return std::unexpected(lastSystemError());
    auto error = out.write(bytes);
    if (!error) error = out.sync();
    if (!error && ::renameat(folder_.get(), temporary.c_str(), folder_.get(), name.c_str()) != 0)
        error = lastSystemError();
    if (!error) return {};
    ::unlinkat(folder_.get(), temporary.c_str(), 0);
    return std::unexpected(error);
}

std::expected<std::string, std::error_code> StagingFolder::read(const std::string& name,
                                                                std::size_t limit) const {
    // Without O_NONBLOCK, opening a named pipe with this name would block forever.
    const FileDescriptor in(
        ::openat(folder_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!in.isOpen()) return std::unexpected(lastSystemError());
    const auto status = statusOf(in);
    if (!status || !isOwn(*status)) return refused();
    return in.readRegularFile(limit);
}

}  // namespace OrvelUpdates
