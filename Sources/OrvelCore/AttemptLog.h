#pragma once

#include <expected>
#include <filesystem>
#include <system_error>
#include <vector>

#include "OrvelCore/Date.h"

namespace OrvelCore {

/// The user's record of failed passwords.
class AttemptLog {
  public:
    /// Thirty days, in seconds.
    static constexpr double keepFor = 2592000;

    AttemptLog() = default;
    explicit AttemptLog(std::vector<Date> attempts);

    /// Ascending.
    const std::vector<Date>& attempts() const { return attempts_; }
    void record(Date date);
    /// Drops what is more than `keepFor` older than `now`; dates in the future stay.
    void prune(Date now);
    /// The attempts at or after `date`, ascending.
    std::vector<Date> since(Date date) const;

    /// "attempts.json" in the data folder.
    static std::filesystem::path standardFile();
    /// The empty log when the file cannot be read or decoded.
    static AttemptLog load(const std::filesystem::path& file);
    std::expected<void, std::error_code> save(const std::filesystem::path& file) const;

    bool operator==(const AttemptLog&) const = default;

  private:
    std::vector<Date> attempts_;
};

}  // namespace OrvelCore
