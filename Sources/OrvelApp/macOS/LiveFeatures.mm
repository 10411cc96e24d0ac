// The parts of `LiveSystem` for covers, modes, the menu and windows.

#import <AppKit/AppKit.h>

#include "OrvelApp/SharedForms.h"
#include "OrvelApp/macOS/LiveSystem.h"
#include "OrvelModes/macOS/LiveStatusItem.h"
#include "OrvelSystem/InterfaceSounds.h"
#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Displays.h"

namespace OrvelApp {

using namespace OrvelSystem;

namespace {

void quit() {
    [NSApp terminate:nil];
}

}  // namespace

MenuSystem LiveSystem::menuSystem() {
    auto menu = SharedForms::menu();
    menu.makeStatusItem = OrvelModes::makeLiveStatusItem;
    menu.panel = OrvelModes::MenuPanelSystem::live();
    menu.fullKeyboardAccess = [] { return static_cast<bool>(NSApp.isFullKeyboardAccessEnabled); };
    menu.quit = quit;
    return menu;
}

ModeSystem LiveSystem::modeSystem() {
    using namespace OrvelModes;
    return {.quickBlur = SharedForms::quickBlur(loop_),
            .focusBlur = SharedForms::focusBlur(loop_),
            .observeAppearance = Appearance::observe,
            .idle = IdleSources::live(loop_),
            .makeCornerPanel = makeLiveCornerPanel,
            .screens = Display::frames,
            .feedback = LockFeedbackRunner::Outputs::live(sounds_),
            .interfaceSoundsOn = [] { return InterfaceSounds::enabled(); },
            .toasts = ToastSystem::live()};
}

WindowSystem LiveSystem::windowSystem() {
    auto windows = SharedForms::windows(loop_, defaults_, quit);
    windows.recorderHooks = OrvelModes::ShortcutRecorder::Hooks::live;
    return windows;
}

CoverSystem LiveSystem::coverSystem() {
    auto covers =
        SharedForms::covers(loop_, verifier_, [] { return Appearance::reducesTransparency(); });
    covers.appLock.activateOrvel = [] { [NSApp activate]; };
    covers.appLock.orvelIsActive = [] { return static_cast<bool>(NSApp.isActive); };
    return covers;
}

}  // namespace OrvelApp
