#include "OrvelCovers/RunningApp.h"

#include "OrvelSystem/Workspace.h"

namespace OrvelCovers {

using OrvelSystem::Workspace;

std::vector<RunningApp> RunningApp::regular() {
    std::vector<RunningApp> apps;
    for (const auto& app : Workspace::shared().runningApplications()) {
        if (app.bundleID)
            apps.push_back({app.pid, app.bundleID, app.name.empty() ? *app.bundleID : app.name});
    }
    return apps;
}

std::string RunningApp::nameForBundleID(std::string_view bundleID) {
    return Workspace::shared().nameOfInstalled(bundleID).value_or(std::string(bundleID));
}

}  // namespace OrvelCovers
