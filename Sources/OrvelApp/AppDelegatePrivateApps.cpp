#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/Text.h"

namespace OrvelApp {

using namespace OrvelCore;

void AppDelegate::setPrivateApps(URLCommands::Switch change) {
    if (!isLaunched_) return;
    if (!system_.capabilities.appCovers)
        return toasts_.show("Private Apps is not available", letsNoneCover, "eye.slash");
    privateApps_->apply(change);
    stateChanged();
}

void AppDelegate::chooseApplication() {
    system_.windows.chooseApplications(lifetime_.guard(
        [this](const std::vector<std::string>& bundleIDs) { addPrivateApps(bundleIDs); }));
}

void AppDelegate::addPrivateApps(const std::vector<std::string>& bundleIDs) {
    for (const auto& bundleID : bundleIDs)
        if (!privateApps_->list().contains(bundleID)) privateApps_->toggle(bundleID);
    privateAppsChanged();
}

void AppDelegate::privateAppsChanged() {
    refreshPrivateAppRows();
    fillPanel();
    refreshIcon();
}

void AppDelegate::refreshPrivateAppRows() {
    auto& model = settings_.model.preferences;
    const auto& list = privateApps_->list();
    std::vector<OrvelUI::AppRow> rows;
    rows.reserve(list.bundleIDs().size());
    for (const auto& bundleID : list.bundleIDs()) rows.push_back(appRow(bundleID));
    model.privateApps.set(std::move(rows));

    std::set<std::string> addable;
    for (const auto& app : system_.covers.running())
        if (app.bundleID && !list.contains(*app.bundleID)) addable.insert(*app.bundleID);
    std::vector<OrvelUI::AppRow> choices;
    choices.reserve(addable.size());
    for (const auto& bundleID : addable) choices.push_back(appRow(bundleID));
    std::ranges::stable_sort(choices, NaturalOrder(), &OrvelUI::AppRow::name);
    model.addableApps.set(std::move(choices));
}

OrvelUI::AppRow AppDelegate::appRow(const std::string& bundleID) const {
    return {bundleID, system_.menu.nameForBundleID(bundleID).value_or(bundleID),
            system_.menu.iconForBundleID(bundleID)};
}

}  // namespace OrvelApp
