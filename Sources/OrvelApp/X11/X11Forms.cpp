#include "OrvelApp/X11/X11Forms.h"

#include <utility>

#include <unistd.h>

#include "OrvelCovers/LiveCoverSurface.h"
#include "OrvelLock/X11/X11Kiosk.h"
#include "OrvelModes/Linux/LiveStatusItem.h"
#include "OrvelModes/X11/StatusItemDesktop.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/Displays.h"
#include "OrvelSystem/X11/InputIdle.h"
#include "OrvelSystem/X11/X11Hotkeys.h"

namespace OrvelApp {

using namespace OrvelModes;
using namespace OrvelSystem;

namespace {

CoverSystem coverSystem(MainLoop& loop, OrvelAuth::PasswordVerifying& verifier) {
    using namespace OrvelCovers;
    const std::int64_t ownPID = getpid();
    CoverSystem covers{
        .makeSurface = [&loop](const OrvelCore::CoverRequest& request,
                               OrvelBlur::BlurBackend backend,
                               std::function<void()> onClick) -> std::unique_ptr<CoverSurface> {
            LiveCoverSurface::Setting setting{
                .loop = loop,
                .backend = backend,
                .displays = WindowServer::displayBounds,
                .reduceTransparency = [] { return Appearance::shared().reducesTransparency(); }};
            return std::make_unique<LiveCoverSurface>(request, std::move(setting),
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
    // A panel comes to the front with its keyboard, and active is who has that.
    covers.appLock.activateOrvel = [] {};
    covers.appLock.orvelIsActive = [] { return ActiveWindow::shared().isOurs(); };
    return covers;
}

}  // namespace

SessionForms makeX11Forms(MainLoop& loop, OrvelAuth::PasswordVerifying& verifier) {
    const std::int64_t ownPID = getpid();
    auto hotkeys = std::make_unique<X11Hotkeys>();
    OrvelLock::X11Kiosk::shared().onNeedsDevices = [hotkeys = hotkeys.get()](bool needs) {
        hotkeys->setGrabsDevices(!needs);
    };
    return {
        .hotkeys = std::move(hotkeys),
        .kiosk = OrvelLock::KioskSystem::live(loop),
        .blurSupport = OrvelBlur::BlurSupport::current(),
        .lockPresenter =
            [&loop](OrvelBlur::BlurBackend backend) {
                return OrvelLock::LockPresenterSystem::live(loop, backend);
            },
        .covers = coverSystem(loop, verifier),
        .quickBlur =
            [&loop, ownPID](OrvelBlur::BlurBackend backend, ModeSystem::Look look,
                            std::function<bool()> macLocked) {
                return QuickBlurSystem::live(loop, backend, ownPID, std::move(look),
                                             std::move(macLocked));
            },
        .focusBlur =
            [&loop, ownPID](OrvelBlur::BlurBackend backend, ModeSystem::Look look) {
                return FocusBlurSystem::live(loop, backend, ownPID, std::move(look));
            },
        .idleSeconds = InputIdle::seconds,
        .makeCornerPanel = makeLiveCornerPanel,
        .screens = Displays::frames,
        .observeScreens =
            [](std::function<void()> changed) {
                Displays::shared().onChanged = std::move(changed);
            },
        .toasts = ToastSystem::live(),
        .menuPanel = MenuPanelSystem::live(),
        .makeStatusItem = [](StatusMenuController& menu) -> std::unique_ptr<StatusItem> {
            return std::make_unique<LiveStatusItem>(menu, x11StatusItemDesktop());
        },
        .recorderHooks = ShortcutRecorder::Hooks::live,
    };
}

}  // namespace OrvelApp
