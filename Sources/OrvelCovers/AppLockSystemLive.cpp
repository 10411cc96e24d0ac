#include "OrvelAuth/Biometrics.h"
#include "OrvelCovers/AppLockSystem.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelCovers {

using OrvelSystem::Workspace;

AppLockSystem AppLockSystem::live(OrvelSystem::MainLoop& loop,
                                  OrvelAuth::PasswordVerifying& verifier, std::int64_t ownPID) {
    AppLockSystem system{.loop = loop, .verifier = verifier, .ownPID = ownPID};
    system.frontApp = []() -> std::optional<OrvelCore::FrontApp> {
        const auto app = Workspace::shared().frontmostApplication();
        if (!app) return std::nullopt;
        return OrvelCore::FrontApp{app->pid, app->bundleID};
    };
    system.appIdentity = [](std::int64_t pid) -> std::optional<AppIdentity> {
        const auto app = Workspace::shared().application(pid);
        if (!app) return std::nullopt;
        return AppIdentity{app->name.empty() ? "This app" : app->name,
                           Workspace::shared().icon(pid)};
    };
    system.activateApp = [](std::int64_t pid) { Workspace::shared().activate(pid); };
    system.hideApp = [](std::int64_t pid) { Workspace::shared().hide(pid); };
    system.appIsActive = [](std::int64_t pid) { return Workspace::shared().isActive(pid); };
    system.biometricsAvailable = OrvelAuth::Biometrics::isAvailable;
    system.makeBiometricContext = [&loop] { return OrvelAuth::Biometrics::makeContext(loop); };
    system.evaluateBiometrics = OrvelAuth::Biometrics::evaluate;
    system.wallClock = [] { return OrvelCore::Date(std::chrono::system_clock::now()); };
    return system;
}

}  // namespace OrvelCovers
