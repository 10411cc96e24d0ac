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

/// Where a chain of links leads, whether or not there is a file. A link that leads in circles
/// leads to itself.
std::filesystem::path targetOf(const std::filesystem::path& file) {
    constexpr int mostLinks = 40;  // as many as the system follows
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
                                                     std::string_view bytes) {
    // People who keep their settings in a repository link them into place.
    const auto target = targetOf(file);

    if (const auto error = makeFolder(target.parent_path())) return std::unexpected(error);
    std::string temporary = target.string() + ".XXXXXX";
    const FileDescriptor out(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!out.isOpen()) return std::unexpected(lastSystemError());
    auto error = out.write(bytes);
    if (!error && ::rename(temporary.c_str(), target.c_str()) != 0) error = lastSystemError();
    if (!error) return {};
    ::unlink(temporary.c_str());
    return std::unexpected(error);
}

std::expected<std::string, std::error_code> readFile(const std::filesystem::path& file,
                                                     std::size_t limit) {
    // Without O_NONBLOCK a pipe in the file's place would hold the program up for ever.
    const FileDescriptor in(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!in.isOpen()) return std::unexpected(lastSystemError());
    return in.readRegularFile(limit);
}

}  // namespace OrvelCore
