#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "OrvelCore/Date.h"

namespace OrvelCore {

/// Says that a lock is running in this boot. It is on disk for exactly as long as a lock is, and
/// is what the crash guard and a relaunched app go by.
struct LockMarker {
    /// When the lock began, by the wall clock; whole seconds survive on disk.
    Date lockedAt;
    /// Identity of the boot in which the lock began.
    std::string bootSession;
    int failures = 0;

    /// One JSON object without white space.
    std::string encoded() const;
    /// Nothing unless all three values are there with their types.
    static std::optional<LockMarker> decode(std::string_view json);

    bool operator==(const LockMarker&) const = default;
};

/// Where a lock keeps its marker.
class MarkerStoring {
  public:
    MarkerStoring() = default;
    MarkerStoring(const MarkerStoring&) = default;
    MarkerStoring& operator=(const MarkerStoring&) = default;
    virtual ~MarkerStoring() = default;

    virtual std::expected<void, std::error_code> write(const LockMarker& marker) = 0;
    /// A failure, a missing marker first of all, is ignored.
    virtual void clear() = 0;
    /// The marker, when it was written in the given boot. A stale one is left where it is, for the
    /// next lock to overwrite.
    virtual std::optional<LockMarker> activeMarker(std::string_view bootSession) const = 0;
};

/// The marker as a file.
class LockMarkerStore final : public MarkerStoring {
  public:
    explicit LockMarkerStore(std::filesystem::path file) : file_(std::move(file)) {}
    /// On "state.json" in the data folder.
    static LockMarkerStore standard();

    std::expected<void, std::error_code> write(const LockMarker& marker) override;
    void clear() override;
    std::optional<LockMarker> activeMarker(std::string_view bootSession) const override;
    /// Nothing when the file cannot be read or decoded.
    std::optional<LockMarker> read() const;

  private:
    std::filesystem::path file_;
};

}  // namespace OrvelCore
