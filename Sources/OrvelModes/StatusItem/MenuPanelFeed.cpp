#include "OrvelModes/StatusItem/MenuPanelFeed.h"

#include <algorithm>
#include <set>

#include "OrvelCore/AppLockRules.h"
#include "OrvelCore/Text.h"

namespace OrvelModes::MenuPanelFeed {

namespace {

using OrvelUI::MenuPanelModel;

bool isLocked(const Sources& sources, std::int64_t pid) {
    return std::any_of(sources.locked.begin(), sources.locked.end(),
                       [pid](const Locked& locked) { return locked.app.pid == pid; });
}

template <class Row>
void sortByName(std::vector<Row>& rows) {
    const OrvelCore::NaturalOrder order;
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const Row& a, const Row& b) { return order(a.name, b.name); });
}

/// Every running app, and every chosen app that does not run.
std::vector<MenuPanelModel::PrivateChoice> privateChoices(const Sources& sources) {
    std::vector<MenuPanelModel::PrivateChoice> choices;
    std::set<std::string, std::less<>> seen;
    const auto add = [&](const std::string& id, std::string name) {
        choices.push_back({.id = id,
                           .name = std::move(name),
                           .icon = sources.iconForBundleID(id),
                           .chosen = sources.privateList.contains(id)});
    };
    for (const auto& app : sources.running) {
        if (OrvelCore::AppLockRules::canLock(app.bundleID) && seen.insert(*app.bundleID).second)
            add(*app.bundleID, app.name);
    }
    for (const auto& id : sources.privateList.bundleIDs()) {
        if (seen.insert(id).second) add(id, sources.nameForBundleID(id).value_or(id));
    }
    sortByName(choices);
    return choices;
}

std::vector<MenuPanelModel::LockedApp> lockedApps(const Sources& sources) {
    std::vector<MenuPanelModel::LockedApp> apps;
    for (const auto& locked : sources.locked)
        apps.push_back({locked.app.pid, locked.app.name, locked.since});
    sortByName(apps);
    return apps;
}

}  // namespace

std::optional<std::int64_t> fill(MenuPanelModel& model, const Sources& sources) {
    model.lockMacShortcut.set(sources.shortcuts.lockMac);
    model.lockAppShortcut.set(sources.shortcuts.lockApp);
    model.quickBlurShortcut.set(sources.shortcuts.quickBlur);
    model.focusBlurShortcut.set(sources.shortcuts.focusBlur);

    const auto& front = sources.front;
    const bool locksFront = front && OrvelCore::AppLockRules::canLock(front->bundleID) &&
                            !isLocked(sources, front->pid);
    model.frontAppName.set(locksFront ? std::optional(front->name) : std::nullopt);
    model.lockedApps.set(lockedApps(sources));
    model.privateAppsOn.set(sources.privateList.enabled);
    model.privateChoices.set(privateChoices(sources));
    model.now.set(sources.now);
    return locksFront ? std::optional(front->pid) : std::nullopt;
}

}  // namespace OrvelModes::MenuPanelFeed
