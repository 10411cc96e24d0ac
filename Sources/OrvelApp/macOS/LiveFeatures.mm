// The parts of `LiveSystem` for covers, modes, the menu and windows.

#include <memory>
#include <utility>

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "OrvelApp/macOS/LiveSystem.h"
#include "OrvelCovers/LiveCoverSurface.h"
#include "OrvelModes/Windows/Dialogs.h"
#include "OrvelModes/macOS/LiveStatusItem.h"
#include "OrvelSystem/DesktopCorners.h"
#include "OrvelSystem/DesktopSettings.h"
#include "OrvelSystem/InterfaceSounds.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/ScreenReader.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Displays.h"

namespace OrvelApp {

using namespace OrvelSystem;
using OrvelCovers::RunningApp;

namespace {

void quit() {
    [NSApp terminate:nil];
}

}  // namespace

MenuSystem LiveSystem::menuSystem() {
    return {
        .makeStatusItem = OrvelModes::makeLiveStatusItem,
        .panel = OrvelModes::MenuPanelSystem::live(),
        .front =
            [] { return Workspace::shared().frontmostApplication().transform(RunningApp::of); },
        .app =
            [](std::int64_t pid) {
                return Workspace::shared().application(pid).transform(RunningApp::of);
            },
        .nameForBundleID =
            [](const std::string& id) { return Workspace::shared().nameOfInstalled(id); },
        .iconForBundleID = [](const std::string& id) { return Workspace::shared().icon(id); },
        .screenReaderOn = ScreenReader::isOn,
        .quit = quit,
    };
}

ModeSystem LiveSystem::modeSystem() {
    using namespace OrvelModes;
    const std::int64_t ownPID = getpid();
    return {.quickBlur =
                [this, ownPID](OrvelBlur::BlurBackend backend, ModeSystem::Look look,
                               std::function<bool()> macLocked) {
                    return QuickBlurSystem::live(loop_, backend, ownPID, std::move(look),
                                                 std::move(macLocked));
                },
            .focusBlur =
                [this, ownPID](OrvelBlur::BlurBackend backend, ModeSystem::Look look) {
                    return FocusBlurSystem::live(loop_, backend, ownPID, std::move(look));
                },
            .observeAppearance = Appearance::observe,
            .idle = IdleSources::live(loop_),
            .makeCornerPanel = makeLiveCornerPanel,
            .screens = Display::frames,
            .feedback = LockFeedbackRunner::Outputs::live(sounds_),
            .interfaceSoundsOn = [] { return InterfaceSounds::enabled(); },
            .toasts = ToastSystem::live()};
}

WindowSystem LiveSystem::windowSystem() {
    using namespace OrvelModes;
    return {
        .settings = SettingsWindowSystem::live(),
        .onboarding = OnboardingWindowSystem::live(),
        .recorderHooks = ShortcutRecorder::Hooks::live,
        .opensAtLogin = LoginItem::isEnabled,
        .setOpensAtLogin =
            [](bool on) { return on ? LoginItem::registerItem() : LoginItem::unregisterItem(); },
        .desktopCorners = DesktopCorners::used,
        .openNotificationSettings = DesktopSettings::openNotificationSettings,
        .openURL = DesktopSettings::openURL,
        .alert = Dialogs::alert,
        .chooseApplications = Dialogs::chooseApplications,
        .uninstall = UninstallSystem::live(loop_, defaults_, quit)};
}

CoverSystem LiveSystem::coverSystem() {
    using namespace OrvelCovers;
    const std::int64_t ownPID = getpid();
    CoverSystem covers{
        .makeSurface = [this](const OrvelCore::CoverRequest& request,
                              OrvelBlur::BlurBackend backend,
                              std::function<void()> onClick) -> std::unique_ptr<CoverSurface> {
            LiveCoverSurface::Setting setting{
                .loop = loop_,
                .backend = backend,
                .displays = WindowServer::displayBounds,
                .reduceTransparency = [] { return Appearance::reducesTransparency(); }};
            return std::make_unique<LiveCoverSurface>(request, std::move(setting),
                                                      std::move(onClick));
        },
        .sources = CoverLoop::Sources::live(loop_, ownPID),
        .watcherReads = WindowWatcher::Reads::live(),
        .badges = AppKitBadgePresenter::System::live(),
        .appLock = AppLockSystem::live(loop_, verifier_, ownPID),
        .running = RunningApp::regular,
        .observeWorkspace =
            [](Workspace::Events events) {
                return Workspace::shared().observe(std::move(events));
            }};
    covers.appLock.activateOrvel = [] { [NSApp activate]; };
    covers.appLock.orvelIsActive = [] { return static_cast<bool>(NSApp.isActive); };
    return covers;
}

}  // namespace OrvelApp
