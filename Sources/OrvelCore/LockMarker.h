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

/// The marker: states that a lock is active in this boot. It is on disk exactly as long as the lock
/// is active. The crash guard and a relaunched app rely on it.
struct LockMarker {
    /// The wall-clock time at which the lock began. On disk it is truncated to whole seconds.
    Date lockedAt;
    /// The identifier of the boot in which the lock began.
    std::string bootSession;
    int failures = 0;
    /// The app left this lock to the system's own locker, which can lock only once the app has
    /// ended. On disk only if true.
    bool isHandedOff = false;

    /// A JSON object without whitespace.
    std::string encoded() const;
    /// `nullopt` unless the first three values are present with the right types.
    static std::optional<LockMarker> decode(std::string_view json);

    bool operator==(const LockMarker&) const = default;
};

/// Stores the marker of a lock.
class MarkerStoring {
  public:
    MarkerStoring() = default;
    MarkerStoring(const MarkerStoring&) = default;
    MarkerStoring& operator=(const MarkerStoring&) = default;
    virtual ~MarkerStoring() = default;

    /// Replaces a stored marker. Returns the reason if it fails.
    virtual std::expected<void, std::error_code> write(const LockMarker& marker) = 0;
    /// Removes the marker. Failures are ignored, including a missing marker.
    virtual void clear() = 0;
    /// Returns the marker if it was written in the given boot, else `nullopt`. A stale marker is
    /// not removed; the next lock overwrites it.
    virtual std::optional<LockMarker> activeMarker(std::string_view bootSession) const = 0;
};

/// Stores the marker as a file.
class LockMarkerStore final : public MarkerStoring {
  public:
    explicit LockMarkerStore(std::filesystem::path file) : file_(std::move(file)) {}
    /// Uses "state.json" in the data folder.
    static LockMarkerStore standard();

    std::expected<void, std::error_code> write(const LockMarker& marker) override;
    void clear() override;
    std::optional<LockMarker> activeMarker(std::string_view bootSession) const override;
    /// `nullopt` if the file cannot be read or decoded.
    std::optional<LockMarker> read() const;

  private:
    std::filesystem::path file_;
};

}  // namespace OrvelCore
