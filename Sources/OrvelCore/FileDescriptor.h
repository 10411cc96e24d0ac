#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace OrvelCore {

/// The error in `errno`, from the call that has just failed.
std::error_code lastSystemError();

/// An open file that is closed by the destructor. A negative descriptor, which `open` returns on
/// failure, means that no file is open.
class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    bool isOpen() const { return descriptor_ >= 0; }
    /// Negative if no file is open.
    int get() const { return descriptor_; }

    /// Writes all bytes. A power failure may still lose them; see `sync`.
    std::error_code write(std::string_view bytes) const;
    /// Waits until everything written is stored on the disk. It may take long beside another
    /// program that writes.
    std::error_code sync() const;
    /// Returns the contents of a regular file. The error is `invalid_argument` if it is not a
    /// regular file, and `file_too_large` if it has more than `limit` bytes.
    std::expected<std::string, std::error_code> readRegularFile(std::size_t limit) const;

  private:
    int descriptor_;
};

}  // namespace OrvelCore
