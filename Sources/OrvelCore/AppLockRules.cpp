#include "OrvelCore/AppLockRules.h"

#include <algorithm>

namespace OrvelCore::AppLockRules {

bool canLock(const std::optional<std::string>& bundleID) {
    return bundleID && std::ranges::find(excluded, *bundleID) == excluded.end();
}

AppLockAction shortcut(const std::optional<FrontApp>& front, std::optional<std::int64_t> badgePID,
                       const std::set<std::int64_t>& locked) {
    if (badgePID && locked.contains(*badgePID)) return AppLockActions::RequestUnlock{*badgePID};
    if (!front) return AppLockActions::Ignore{};
    if (locked.contains(front->pid)) return AppLockActions::RequestUnlock{front->pid};
    if (!canLock(front->bundleID)) return AppLockActions::Ignore{};
    return AppLockActions::Lock{front->pid};
}

}  // namespace OrvelCore::AppLockRules
