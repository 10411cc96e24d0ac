#include "OrvelCore/PrivateAppList.h"

#include <algorithm>

#include "OrvelCore/Brand.h"

namespace OrvelCore {

PrivateAppList::PrivateAppList(const std::vector<std::string>& bundleIDs, bool isEnabled)
    : enabled(isEnabled) {
    for (const auto& bundleID : bundleIDs) {
        if (!contains(bundleID)) toggle(bundleID);
    }
}

PrivateAppList PrivateAppList::load(const SettingsStore& store) {
    return PrivateAppList(
        store.stringArrayForKey("privateApps").value_or(std::vector<std::string>()),
        store.boolForKey("privateAppsEnabled").value_or(true));
}

void PrivateAppList::save(SettingsStore& store) const {
    store.setStringArray("privateApps", bundleIDs_);
    store.setBool("privateAppsEnabled", enabled);
}

bool PrivateAppList::contains(std::string_view bundleID) const {
    return std::find(bundleIDs_.begin(), bundleIDs_.end(), bundleID) != bundleIDs_.end();
}

void PrivateAppList::toggle(std::string_view bundleID) {
    if (bundleID == Brand::bundleIdentifier) return;
    const auto found = std::find(bundleIDs_.begin(), bundleIDs_.end(), bundleID);
    if (found != bundleIDs_.end()) {
        bundleIDs_.erase(found);
    } else {
        bundleIDs_.emplace_back(bundleID);
    }
}

}  // namespace OrvelCore
