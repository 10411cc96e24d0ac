#include "OrvelCore/AtomicFile.h"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "OrvelCore/FileDescriptor.h"

namespace OrvelCore {

namespace {

std::error_code makeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) return {};
    std::filesystem::create_directories(folder.parent_path(), error);
    if (error) return error;
    if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) return lastSystemError();
    return {};
}

/// The end of a chain of symbolic links, even if there is no file. A cyclic link is returned
/// itself.
std::filesystem::path targetOf(const std::filesystem::path& file) {
    constexpr int mostLinks = 40;  // the limit that Linux applies
    std::error_code error;
    std::filesystem::path target = file;
    for (int links = 0; links < mostLinks; ++links) {
        const auto next = std::filesystem::read_symlink(target, error);
        if (error) return target;
        target = target.parent_path() / next;
    }
    return file;
}

}  // namespace

std::expected<void, std::error_code> writeAtomically(const std::filesystem::path& file,
                                                     std::string_view bytes,
                                                     Durability durability) {
    // Users who keep their settings in a repository put symbolic links in their place.
    const auto target = targetOf(file);

    if (const auto error = makeFolder(target.parent_path())) return std::unexpected(error);
    std::string temporary = target.string() + ".XXXXXX";
    const FileDescriptor out(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!out.isOpen()) return std::unexpected(lastSystemError());
    auto error = out.write(bytes);
    if (!error && durability == Durability::durable) error = out.sync();
    if (!error && ::rename(temporary.c_str(), target.c_str()) != 0) error = lastSystemError();
    if (!error) return {};
    ::unlink(temporary.c_str());
    return std::unexpected(error);
}

std::expected<std::string, std::error_code> readFile(const std::filesystem::path& file,
                                                     std::size_t limit) {
    // Without O_NONBLOCK, opening a named pipe at this path would block forever.
    const FileDescriptor in(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!in.isOpen()) return std::unexpected(lastSystemError());
    return in.readRegularFile(limit);
}

}  // namespace OrvelCore
