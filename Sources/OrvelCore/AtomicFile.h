#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace OrvelCore {

/// Replaces the file as a whole: a reader, or a machine that loses its power, sees the old bytes
/// or the new ones. The file is readable by its owner alone. Missing folders are made, the one
/// that holds the file for its owner alone. A symbolic link is followed, not replaced.
std::expected<void, std::error_code> writeAtomically(const std::filesystem::path& file,
                                                     std::string_view bytes);

/// All bytes of a regular file; `no_such_file_or_directory` when there is none, and
/// `file_too_large` when there are more than `limit`.
std::expected<std::string, std::error_code> readFile(
    const std::filesystem::path& file, std::size_t limit = std::numeric_limits<std::size_t>::max());

}  // namespace OrvelCore
