#include "OrvelCovers/PrivateAppsController.h"

#include <set>
#include <utility>

namespace OrvelCovers {

using OrvelCore::PrivateAppList;

PrivateAppsController::PrivateAppsController(CoverLoop& loop, OrvelCore::SettingsStore& defaults,
                                             Running running)
    : loop_(loop),
      defaults_(defaults),
      running_(std::move(running)),
      list_(PrivateAppList::load(defaults)) {
    refresh();
}

void PrivateAppsController::refresh() {
    std::set<std::int64_t> pids;
    // Skip the process list while no app can be private.
    if (list_.enabled && !list_.bundleIDs().empty()) {
        for (const auto& app : running_()) {
            if (app.bundleID && list_.contains(*app.bundleID)) pids.insert(app.pid);
        }
    }
    loop_.setPrivatePIDs(std::move(pids));
}

void PrivateAppsController::toggle(std::string_view bundleID) {
    list_.toggle(bundleID);
    save();
}

void PrivateAppsController::setEnabled(bool enabled) {
    list_.enabled = enabled;
    save();
}

void PrivateAppsController::apply(OrvelCore::URLCommands::Switch change) {
    // Another part of the program may have changed the stored list.
    list_ = PrivateAppList::load(defaults_);
    setEnabled(OrvelCore::URLCommands::apply(change, list_.enabled));
}

void PrivateAppsController::save() {
    list_.save(defaults_);
    refresh();
}

}  // namespace OrvelCovers
