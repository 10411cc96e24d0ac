#include <algorithm>
#include <chrono>
#include <vector>

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "OrvelAuth/Biometrics.h"
#include "OrvelBlur/macOS/CocoaPanelContent.h"
#include "OrvelLock/LiveLockSurface.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Displays.h"
#include "OrvelSystem/macOS/Notifications.h"
#include "OrvelUI/Palette.h"
#import "OrvelUI/macOS/LockViews.h"
#import "OrvelUI/macOS/NoticePillView.h"

namespace OrvelLock {

using namespace OrvelSystem;

std::shared_ptr<OrvelBlur::PanelContent> makeLockContent(const LockSurfaceContent& content) {
    NSView<OrvelPlacedView>* const view =
        content.kind == LockContent::pill
            ? OrvelUI::makeSecondaryDisplayPill(*content.model, content.notch)
            : OrvelUI::makeLockScreenContent(*content.model, content.notch);
    return std::make_shared<OrvelBlur::CocoaPanelContent>(
        view, [view](NSSize panel) { return [view placementIn:panel]; });
}

namespace {

std::vector<DisplayInfo> readDisplays() {
    std::vector<DisplayInfo> infos;
    for (const auto& display : Display::all())
        infos.push_back({display.id, display.frame, OrvelUI::notchOf(display.screen)});
    return infos;
}

std::unique_ptr<LockSurface> makeSurface(MainLoop& loop, OrvelBlur::BlurBackend backend,
                                         const DisplayInfo& display,
                                         const OrvelCore::OverlayLook& look) {
    std::optional<OrvelCore::Color> fill;
    if (look.solid) fill = OrvelUI::Palette::solidColor(look);
    return std::make_unique<LiveLockSurface>(std::make_unique<OrvelBlur::BlurSurface>(
        OrvelBlur::OverlayPanel::make(display.frame, OrvelBlur::WindowLevel::lock), backend,
        OrvelUI::Palette::tintColor(look), fill, 0, loop));
}

OrvelCore::Subscription startObserving(LockPresenterEvents events) {
    struct Watch {
        OrvelCore::Subscription activations;
        std::vector<OrvelCore::Subscription> keys;
    };
    auto watch = std::make_shared<Watch>();
    watch->activations = Workspace::shared().observe({.activated = events.appActivated});
    const auto tell = [keyChanged = events.keyChanged](NSNotification* notification) {
        id window = notification.object;
        if ([window isKindOfClass:[NSWindow class]])
            keyChanged(static_cast<NSWindow*>(window).windowNumber);
    };
    for (NSNotificationName name :
         {NSWindowDidBecomeKeyNotification, NSWindowDidResignKeyNotification})
        watch->keys.push_back(observeNotification(NSNotificationCenter.defaultCenter, name, tell));
    return OrvelCore::Subscription(watch);
}

}  // namespace

LockPresenterSystem LockPresenterSystem::live(MainLoop& loop, OrvelBlur::BlurBackend backend) {
    LockPresenterSystem system{.loop = loop, .ownPID = getpid()};
    system.displays = readDisplays;
    system.pointer = [] { return PointerState::location(); };
    system.makeSurface = [&loop, backend](const DisplayInfo& display,
                                          const OrvelCore::OverlayLook& look) {
        return OrvelLock::makeSurface(loop, backend, display, look);
    };
    system.appIsActive = [] { return static_cast<bool>(NSApp.isActive); };
    system.activateApp = [] { [NSApp activate]; };
    system.biometricsAvailable = OrvelAuth::Biometrics::isAvailable;
    system.makeBiometricContext = [&loop] { return OrvelAuth::Biometrics::makeContext(loop); };
    system.evaluateBiometrics = OrvelAuth::Biometrics::evaluate;
    system.reduceMotion = [] { return Appearance::reducesMotion(); };
    system.wallClock = [] { return OrvelCore::Date(std::chrono::system_clock::now()); };
    system.observe = startObserving;
    return system;
}

}  // namespace OrvelLock
