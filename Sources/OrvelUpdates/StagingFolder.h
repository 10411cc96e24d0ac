#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "OrvelCore/FileDescriptor.h"

namespace OrvelUpdates {

/// The folder in which verified packages wait for their installer. Only this user can enter it, and
/// no other user can replace it. It is held open, so every operation applies to the folder that was
/// checked.
class StagingFolder {
  public:
    enum class Missing { isAnError, isMade };

    /// Sets the folder's mode to 0700, and removes the permission of others to write to its parent
    /// folder. Returns an error if the folder is a symbolic link, or if another user owns one of
    /// the two folders. `missing` tells whether a missing folder is an error or is created.
    static std::expected<StagingFolder, std::error_code> open(const std::filesystem::path& folder,
                                                              Missing missing);

    /// Replaces the file of that name, or a symbolic link, as a whole by a new file that only its
    /// owner can access. `name` must not contain a folder.
    std::expected<void, std::error_code> write(const std::string& name,
                                               std::string_view bytes) const;
    /// Returns the contents of a regular file that this user owns. Returns an error for a symbolic
    /// link and for more than `limit` bytes.
    std::expected<std::string, std::error_code> read(const std::string& name,
                                                     std::size_t limit) const;

  private:
    explicit StagingFolder(OrvelCore::FileDescriptor folder) : folder_(std::move(folder)) {}

    OrvelCore::FileDescriptor folder_;
};

}  // namespace OrvelUpdates
