#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

#include "OrvelCore/WindowInfo.h"

namespace OrvelCore {

/// Tells which windows are in motion. One seen for the first time is not; a change of size counts
/// as much as one of place.
class MotionTracker {
  public:
    /// How long after its last change, in seconds, a window still counts as moving.
    explicit MotionTracker(double rest) : rest_(rest) {}

    /// The numbers of the windows in motion at `now`, seconds of uptime. Windows that are missing
    /// are forgotten.
    std::set<std::int64_t> update(const std::vector<WindowInfo>& windows, double now);

  private:
    struct Entry {
        Rect bounds;
        std::optional<double> changedAt;
    };

    double rest_;
    std::unordered_map<std::int64_t, Entry> entries_;
};

}  // namespace OrvelCore
