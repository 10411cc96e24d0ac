#include "OrvelCore/AtomicFile.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvelCore {

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// A descriptor that closes itself.
class File {
  public:
    explicit File(int descriptor) : descriptor_(descriptor) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (isOpen()) ::close(descriptor_);
    }

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

    std::error_code write(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) return lastError();
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return ::fsync(descriptor_) == 0 ? std::error_code() : lastError();
    }

  private:
    int descriptor_;
};

std::error_code makeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) return {};
    std::filesystem::create_directories(folder.parent_path(), error);
    if (error) return error;
    if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) return lastError();
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
    const File out(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!out.isOpen()) return std::unexpected(lastError());
    auto error = out.write(bytes);
    if (!error && ::rename(temporary.c_str(), target.c_str()) != 0) error = lastError();
    if (!error) return {};
    ::unlink(temporary.c_str());
    return std::unexpected(error);
}

std::expected<std::string, std::error_code> readFile(const std::filesystem::path& file,
                                                     std::size_t limit) {
    // Without O_NONBLOCK a pipe in the file's place would hold the program up for ever.
    const File in(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!in.isOpen()) return std::unexpected(lastError());
    struct stat info {};
    if (::fstat(in.descriptor(), &info) != 0) return std::unexpected(lastError());
    if (!S_ISREG(info.st_mode))
        return std::unexpected(std::make_error_code(std::errc::invalid_argument));
    const std::unexpected tooLarge(std::make_error_code(std::errc::file_too_large));
    if (static_cast<std::uintmax_t>(info.st_size) > limit) return tooLarge;
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(info.st_size));
    char block[16384];
    for (;;) {
        const ssize_t count = ::read(in.descriptor(), block, sizeof block);
        if (count == 0) return bytes;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::unexpected(lastError());
        if (static_cast<std::size_t>(count) > limit - bytes.size()) return tooLarge;
        bytes.append(block, static_cast<std::size_t>(count));
    }
}

}  // namespace OrvelCore
