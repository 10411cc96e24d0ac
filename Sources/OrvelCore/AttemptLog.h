#pragma once

#include <expected>
#include <filesystem>
#include <system_error>
#include <vector>

#include "OrvelCore/Date.h"

namespace OrvelCore {

/// The log of failed password attempts.
class AttemptLog {
  public:
    /// In seconds: thirty days.
    static constexpr double keepFor = 2592000;

    AttemptLog() = default;
    explicit AttemptLog(std::vector<Date> attempts);

    /// In ascending order.
    const std::vector<Date>& attempts() const { return attempts_; }
    void record(Date date);
    /// Removes attempts that are more than `keepFor` older than `now`; keeps dates in the future.
    void prune(Date now);
    /// The attempts at or after `date`, in ascending order.
    std::vector<Date> since(Date date) const;

    /// "attempts.json" in the data folder.
    static std::filesystem::path standardFile();
    /// Returns an empty log if the file cannot be read or decoded.
    static AttemptLog load(const std::filesystem::path& file);
    /// Returns the reason if it fails.
    std::expected<void, std::error_code> save(const std::filesystem::path& file) const;

    bool operator==(const AttemptLog&) const = default;

  private:
    std::vector<Date> attempts_;
};

}  // namespace OrvelCore
