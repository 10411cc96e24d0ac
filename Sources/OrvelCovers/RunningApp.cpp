#include "OrvelCovers/RunningApp.h"

#include "OrvelSystem/Workspace.h"

namespace OrvelCovers {

using OrvelSystem::Workspace;

RunningApp RunningApp::of(const OrvelSystem::RunningApplication& app) {
    return {app.pid, app.bundleID, app.name.empty() ? app.bundleID.value_or("App") : app.name};
}

std::vector<RunningApp> RunningApp::regular() {
    std::vector<RunningApp> apps;
    for (const auto& app : Workspace::shared().runningApplications()) {
        if (app.bundleID) apps.push_back(of(app));
    }
    return apps;
}

std::string RunningApp::nameForBundleID(std::string_view bundleID) {
    return Workspace::shared().nameOfInstalled(bundleID).value_or(std::string(bundleID));
}

}  // namespace OrvelCovers
