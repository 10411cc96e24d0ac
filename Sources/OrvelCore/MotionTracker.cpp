#include "OrvelCore/MotionTracker.h"

#include <utility>

namespace OrvelCore {

std::set<WindowID> MotionTracker::update(const std::vector<WindowInfo>& windows, double now) {
    std::unordered_map<WindowID, Entry> seen;
    seen.reserve(windows.size());
    std::set<WindowID> moving;
    for (const auto& window : windows) {
        const auto known = entries_.find(window.number);
        Entry entry = known == entries_.end() ? Entry{window.bounds, std::nullopt} : known->second;
        if (entry.bounds != window.bounds) entry = {window.bounds, now};
        if (entry.changedAt && rest_ > now - *entry.changedAt) moving.insert(window.number);
        seen.insert_or_assign(window.number, entry);
    }
    entries_ = std::move(seen);
    return moving;
}

}  // namespace OrvelCore
