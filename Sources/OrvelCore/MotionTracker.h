#pragma once

#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

#include "OrvelCore/WindowInfo.h"

namespace OrvelCore {

/// Determines which windows are moving. A window that is seen for the first time is not moving;
/// resizing counts as moving.
class MotionTracker {
  public:
    /// `rest` is the time in seconds for which a window still counts as moving after its last
    /// change.
    explicit MotionTracker(double rest) : rest_(rest) {}

    /// Returns the numbers of the windows that are moving at `now`, in seconds of uptime. Windows
    /// that are missing from the list are forgotten.
    std::set<WindowID> update(const std::vector<WindowInfo>& windows, double now);

  private:
    struct Entry {
        Rect bounds;
        std::optional<double> changedAt;
    };

    double rest_;
    std::unordered_map<WindowID, Entry> entries_;
};

}  // namespace OrvelCore
