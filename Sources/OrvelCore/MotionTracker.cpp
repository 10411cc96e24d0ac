#include "OrvelCore/MotionTracker.h"

#include <utility>

namespace OrvelCore {

std::set<std::int64_t> MotionTracker::update(const std::vector<WindowInfo>& windows, double now) {
    std::unordered_map<std::int64_t, Entry> seen;
    seen.reserve(windows.size());
    std::set<std::int64_t> moving;
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
