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

/// Where verified packages wait for their installer: a folder that only this user can enter, and
/// that no other user can replace. It is held open, so all that is done with it concerns the folder
/// that was looked at.
class StagingFolder {
  public:
    enum class Missing { isAnError, isMade };

    /// Sets the folder's mode to 0700, and takes away from others the right to write the folder
    /// around it. An error for a link in the folder's own place, and where one of the two folders
    /// belongs to another user.
    static std::expected<StagingFolder, std::error_code> open(const std::filesystem::path& folder,
                                                              Missing missing);

    /// Replaces the file of that name as a whole, a link included, by a new one for its owner
    /// alone. `name` has no folder in it.
    std::expected<void, std::error_code> write(const std::string& name,
                                               std::string_view bytes) const;
    /// What a regular file holds that belongs to this user; an error for a link and for more than
    /// `limit` bytes.
    std::expected<std::string, std::error_code> read(const std::string& name,
                                                     std::size_t limit) const;

  private:
    explicit StagingFolder(OrvelCore::FileDescriptor folder) : folder_(std::move(folder)) {}

    OrvelCore::FileDescriptor folder_;
};

}  // namespace OrvelUpdates
