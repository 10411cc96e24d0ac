#include <unistd.h>

#include "OrvelAuth/Biometrics.h"
#include "OrvelLock/LiveLockSurface.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelLock/X11/X11Kiosk.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelSystem/X11/ActiveWindow.h"
#include "OrvelSystem/X11/Displays.h"
#include "OrvelUI/Palette.h"

namespace OrvelLock {

using namespace OrvelSystem;

namespace {

/// Connects the surfaces, which report changes of their focus, to the current observer.
struct Listeners {
    std::weak_ptr<LockPresenterEvents> events;
};

std::unique_ptr<OrvelBlur::BlurSurface> blurSurface(std::unique_ptr<OrvelBlur::OverlayPanel> panel,
                                                    const OrvelCore::OverlayLook& look,
                                                    MainLoop& loop,
                                                    OrvelBlur::BlurBackend backend) {
    std::optional<OrvelCore::Color> fill;
    if (look.solid) fill = OrvelUI::Palette::solidColor(look);
    return std::make_unique<OrvelBlur::BlurSurface>(
        std::move(panel), backend, OrvelUI::Palette::tintColor(look), fill, 0, loop);
}

/// What an observation keeps alive.
struct Watch {
    std::shared_ptr<LockPresenterEvents> events;
    OrvelCore::Subscription activeWindow;
};

}  // namespace

LockPresenterSystem LockPresenterSystem::live(MainLoop& loop, OrvelBlur::BlurBackend backend) {
    const auto listeners = std::make_shared<Listeners>();
    LockPresenterSystem system{.loop = loop, .ownPID = getpid()};
    system.displays = [] {
        std::vector<DisplayInfo> infos;
        for (const auto& display : Displays::shared().list())
            infos.push_back({display.id, display.frame, std::nullopt});
        return infos;
    };
    system.pointer = [] { return PointerState::location(); };
    system.makeSurface = [&loop, backend, listeners](const DisplayInfo& display,
                                                     const OrvelCore::OverlayLook& look) {
        auto panel = OrvelBlur::OverlayPanel::make(display.frame, OrvelBlur::WindowLevel::lock);
        // Read at each event: the panel gets a new window when a client destroys the old one.
        panel->onKeyChanged = [listeners, panel = panel.get()] {
            if (const auto events = listeners->events.lock())
                events->keyChanged(panel->windowNumber());
        };
        return std::make_unique<LiveLockSurface>(
            blurSurface(std::move(panel), look, loop, backend));
    };
    system.rehearse = [&loop, backend](const DisplayInfo& display,
                                       const OrvelCore::OverlayLook& look,
                                       const LockSurfaceContent& content) {
        auto panel = OrvelBlur::OverlayPanel::make(display.frame, OrvelBlur::WindowLevel::lock);
        const auto surface = blurSurface(std::move(panel), look, loop, backend);
        surface->setContent(makeLockContent(content));
        surface->rehearse(look.radius);
    };
    // The app that holds the keyboard is the active one. While the lock yields, no app is, and the
    // session ignores that.
    system.appIsActive = [] { return X11Kiosk::shared().hasKeys(); };
    system.activateApp = [] {};
    system.biometricsAvailable = OrvelAuth::Biometrics::isAvailable;
    system.makeBiometricContext = [&loop] { return OrvelAuth::Biometrics::makeContext(loop); };
    system.evaluateBiometrics = OrvelAuth::Biometrics::evaluate;
    system.reduceMotion = [] { return Appearance::shared().reducesMotion(); };
    system.wallClock = [] { return OrvelCore::Date(std::chrono::system_clock::now()); };
    system.observe = [listeners](LockPresenterEvents events) {
        auto watch = std::make_shared<Watch>();
        watch->events = std::make_shared<LockPresenterEvents>(std::move(events));
        listeners->events = watch->events;
        watch->activeWindow =
            ActiveWindow::shared().observe([weak = std::weak_ptr(watch->events)](const auto& app) {
                if (const auto alive = weak.lock()) alive->appActivated(app.pid);
            });
        return OrvelCore::Subscription(watch);
    };
    return system;
}

}  // namespace OrvelLock
