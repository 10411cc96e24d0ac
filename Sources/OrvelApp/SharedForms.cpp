#include "OrvelApp/SharedForms.h"

#include <utility>

#include <unistd.h>

#include "OrvelCovers/LiveCoverSurface.h"
#include "OrvelModes/Windows/Dialogs.h"
#include "OrvelSystem/DesktopCorners.h"
#include "OrvelSystem/DesktopSettings.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/ScreenReader.h"
#include "OrvelSystem/WindowServer.h"

namespace OrvelApp::SharedForms {

using OrvelSystem::MainLoop;
using OrvelSystem::Workspace;

CoverSystem covers(MainLoop& loop, OrvelAuth::PasswordVerifying& verifier,
                   std::function<bool()> reduceTransparency) {
    using namespace OrvelCovers;
    const std::int64_t ownPID = getpid();
    return {
        .makeSurface = [&loop, reduceTransparency = std::move(reduceTransparency)](
                           const OrvelCore::CoverRequest& request, OrvelBlur::BlurBackend backend,
                           std::function<void()> onClick) -> std::unique_ptr<CoverSurface> {
            LiveCoverSurface::Environment environment{
                .loop = loop,
                .backend = backend,
                .displays = OrvelSystem::WindowServer::displayBounds,
                .reduceTransparency = reduceTransparency};
            return std::make_unique<LiveCoverSurface>(request, std::move(environment),
                                                      std::move(onClick));
        },
        .sources = CoverLoop::Sources::live(loop, ownPID),
        .watcherReads = WindowWatcher::Reads::live(),
        .badges = AppKitBadgePresenter::System::live(),
        .appLock = AppLockSystem::live(loop, verifier, ownPID),
        .running = RunningApp::regular,
        .observeWorkspace =
            [](Workspace::Events events) {
                return Workspace::shared().observe(std::move(events));
            }};
}

decltype(ModeSystem::quickBlur) quickBlur(MainLoop& loop) {
    return [&loop](OrvelBlur::BlurBackend backend, ModeSystem::Look look,
                   std::function<bool()> macLocked) {
        return OrvelModes::QuickBlurSystem::live(loop, backend, getpid(), std::move(look),
                                                 std::move(macLocked));
    };
}

decltype(ModeSystem::focusBlur) focusBlur(MainLoop& loop) {
    return [&loop](OrvelBlur::BlurBackend backend, ModeSystem::Look look) {
        return OrvelModes::FocusBlurSystem::live(loop, backend, getpid(), std::move(look));
    };
}

MenuSystem menu() {
    using OrvelCovers::RunningApp;
    return {
        .front =
            [] { return Workspace::shared().frontmostApplication().transform(RunningApp::of); },
        .app =
            [](std::int64_t pid) {
                return Workspace::shared().application(pid).transform(RunningApp::of);
            },
        .nameForBundleID =
            [](const std::string& bundleID) {
                return Workspace::shared().nameOfInstalled(bundleID);
            },
        .iconForBundleID =
            [](const std::string& bundleID) { return Workspace::shared().icon(bundleID); },
        .screenReaderOn = OrvelSystem::ScreenReader::isOn,
    };
}

WindowSystem windows(MainLoop& loop, OrvelCore::SettingsStore& defaults,
                     std::function<void()> quit) {
    using namespace OrvelModes;
    using namespace OrvelSystem;
    return {
        .settings = SettingsWindowSystem::live(),
        .onboarding = OnboardingWindowSystem::live(),
        .opensAtLogin = LoginItem::isEnabled,
        .setOpensAtLogin =
            [](bool on) { return on ? LoginItem::registerItem() : LoginItem::unregisterItem(); },
        .desktopCorners = DesktopCorners::used,
        .openNotificationSettings = DesktopSettings::openNotificationSettings,
        .openURL = DesktopSettings::openURL,
        .alert = Dialogs::alert,
        .chooseApplications = Dialogs::chooseApplications,
        .uninstall = UninstallSystem::live(loop, defaults, std::move(quit))};
}

}  // namespace OrvelApp::SharedForms
