#include "OrvelApp/X11/X11Forms.h"

#include <utility>

#include "OrvelApp/SharedForms.h"
#include "OrvelLock/X11/X11Kiosk.h"
#include "OrvelModes/Linux/LiveStatusItem.h"
#include "OrvelModes/X11/StatusItemDesktop.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/Displays.h"
#include "OrvelSystem/X11/InputIdle.h"
#include "OrvelSystem/X11/X11Hotkeys.h"

namespace OrvelApp {

using namespace OrvelModes;
using namespace OrvelSystem;

namespace {

CoverSystem coverSystem(MainLoop& loop, OrvelAuth::PasswordVerifying& verifier) {
    auto covers = SharedForms::covers(loop, verifier,
                                      [] { return Appearance::shared().reducesTransparency(); });
    // A panel comes to the front with its keyboard, so the program is active while it has the
    // keyboard.
    covers.appLock.activateOrvel = [] {};
    covers.appLock.orvelIsActive = [] { return ActiveWindow::shared().isOurs(); };
    return covers;
}

}  // namespace

SessionForms makeX11Forms(MainLoop& loop, OrvelAuth::PasswordVerifying& verifier) {
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
        .quickBlur = SharedForms::quickBlur(loop),
        .focusBlur = SharedForms::focusBlur(loop),
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
