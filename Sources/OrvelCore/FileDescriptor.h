#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace OrvelCore {

/// The `errno` of the call that has just failed.
std::error_code lastSystemError();

/// An open file that closes itself. A negative descriptor, as `open` gives on failure, is none.
class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    bool isOpen() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

    /// All of the bytes, and waits until the disk has them.
    std::error_code write(std::string_view bytes) const;
    /// What a regular file holds; `invalid_argument` for anything else, and `file_too_large` when
    /// there are more than `limit` bytes.
    std::expected<std::string, std::error_code> readRegularFile(std::size_t limit) const;

  private:
    int descriptor_;
};

}  // namespace OrvelCore
