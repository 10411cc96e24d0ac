#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace OrvelCore {

/// Whether a file must survive a power failure. If not, it may be missing, empty or damaged after
/// the next start of the system, but the write does not wait for the disk.
enum class Durability { durable, untilShutdown };

/// Replaces the file as a whole: a concurrent reader sees the old or the new contents, and so does
/// the system after a power failure if the file is durable. Only the owner can read the file.
/// Missing folders are created; the one that contains the file is accessible only to its owner. A
/// symbolic link is followed, not replaced.
std::expected<void, std::error_code> writeAtomically(const std::filesystem::path& file,
                                                     std::string_view bytes,
                                                     Durability durability = Durability::durable);

/// Returns the contents of a regular file. The error is `no_such_file_or_directory` if there is no
/// file, `invalid_argument` if it is not a regular file, and `file_too_large` if it has more than
/// `limit` bytes.
std::expected<std::string, std::error_code> readFile(
    const std::filesystem::path& file, std::size_t limit = std::numeric_limits<std::size_t>::max());

}  // namespace OrvelCore
