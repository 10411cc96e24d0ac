#import <AppKit/AppKit.h>
#include <unistd.h>

#include "OrvelLock/KioskController.h"
#include "OrvelSystem/Workspace.h"

namespace OrvelLock {

using OrvelSystem::Workspace;

// Everything that the kiosk takes belongs to the process and ends with it. The system's own lock
// always comes up over the covers, so there is nothing to yield. Only the presentation options can
// lapse, while the app is not active.
KioskSystem KioskSystem::live(OrvelSystem::MainLoop& loop) {
    KioskSystem system{.loop = loop, .ownPID = getpid()};
    system.frontmostApp = []() -> std::optional<AppHandle> {
        const auto app = Workspace::shared().frontmostApplication();
        return app ? std::optional(AppHandle{.pid = app->pid}) : std::nullopt;
    };
    system.setRegular = [] { [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular]; };
    system.setAccessory = [] {
        [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
    };
    system.activate = [] { [NSApp activate]; };
    system.tryActivate = [] { return static_cast<bool>(NSApp.isActive); };
    system.setPresentationOptions = [](std::uint32_t options) {
        NSApp.presentationOptions = static_cast<NSApplicationPresentationOptions>(options);
    };
    system.activateApp = [](const AppHandle& app) { Workspace::shared().activate(app.pid); };
    return system;
}

}  // namespace OrvelLock
