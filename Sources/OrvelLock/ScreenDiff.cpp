#include "OrvelLock/ScreenDiff.h"

namespace OrvelLock {

ScreenDiff ScreenDiff::plan(const std::map<std::uint32_t, OrvelCore::Rect>& existing,
                            const std::map<std::uint32_t, OrvelCore::Rect>& current) {
    ScreenDiff diff;
    for (const auto& [id, frame] : current) {
        const auto old = existing.find(id);
        if (old == existing.end())
            diff.add.push_back(id);
        else if (old->second != frame)
            diff.reframe.push_back(id);
    }
    for (const auto& [id, frame] : existing) {
        if (!current.contains(id)) diff.remove.push_back(id);
    }
    return diff;
}

}  // namespace OrvelLock
