#include "OrvelModes/macOS/LiveAppWindow.h"

#include <string>

#include "OrvelCore/Brand.h"
#include "OrvelModes/Windows/OnboardingWindowController.h"
#include "OrvelModes/Windows/SettingsWindowController.h"
#include "OrvelModes/Windows/ShortcutRecorder.h"
#include "OrvelModes/macOS/CocoaMenu.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/Notifications.h"
#include "OrvelUI/OnboardingContent.h"
#include "OrvelUI/SettingsPanes.h"
#import "OrvelUI/macOS/WindowViews.h"

namespace OrvelModes {

namespace Brand = OrvelCore::Brand;
namespace Cocoa = OrvelSystem::Cocoa;
using OrvelSystem::observeNotification;

LiveAppWindow::LiveAppWindow(NSWindow* window) : window_(window) {
    window_.releasedWhenClosed = NO;
    closing_ =
        observeNotification(NSNotificationCenter.defaultCenter, NSWindowWillCloseNotification,
                            [this](NSNotification* notification) {
                                if (notification.object != window_) return;
                                const auto call = onWillClose;
                                call();
                            });
}

LiveAppWindow::~LiveAppWindow() {
    closing_.reset();
    [window_ close];
}

namespace {

constexpr NSWindowStyleMask settingsMask = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                           NSWindowStyleMaskMiniaturizable |
                                           NSWindowStyleMaskFullSizeContentView;
constexpr NSWindowStyleMask guideMask =
    NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskFullSizeContentView;

NSWindow* makeWindow(const std::string& title, OrvelCore::Size size, NSWindowStyleMask mask) {
    NSWindow* const window =
        [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, size.width, size.height)
                                    styleMask:mask
                                      backing:NSBackingStoreBuffered
                                        defer:NO];
    window.title = Cocoa::string(title);
    window.titlebarAppearsTransparent = YES;
    return window;
}

std::unique_ptr<AppWindow> makeSettings(OrvelUI::SettingsModel& model) {
    NSWindow* const window =
        makeWindow(std::string(Brand::name) + " Settings", OrvelUI::settingsSize, settingsMask);
    window.toolbar = [[NSToolbar alloc] initWithIdentifier:@"settings"];
    window.toolbarStyle = NSWindowToolbarStyleUnified;
    window.contentView = OrvelUI::makeSettingsView(model);
    return std::make_unique<LiveAppWindow>(window);
}

std::unique_ptr<AppWindow> makeGuide(OrvelUI::OnboardingModel& model) {
    NSWindow* const window = makeWindow("Welcome to " + std::string(Brand::name),
                                        OrvelUI::OnboardingContent::size, guideMask);
    window.titleVisibility = NSWindowTitleHidden;
    window.movableByWindowBackground = YES;
    NSVisualEffectView* const effect = [[NSVisualEffectView alloc]
        initWithFrame:NSMakeRect(0, 0, OrvelUI::OnboardingContent::size.width,
                                 OrvelUI::OnboardingContent::size.height)];
    effect.material = NSVisualEffectMaterialUnderWindowBackground;
    effect.blendingMode = NSVisualEffectBlendingModeBehindWindow;
    effect.state = NSVisualEffectStateActive;
    NSView* const content = OrvelUI::makeOnboardingView(model);
    content.frame = effect.bounds;
    content.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
    [effect addSubview:content];
    window.contentView = effect;
    return std::make_unique<LiveAppWindow>(window);
}

/// The watch of the Settings window while a shortcut is recorded.
struct Recording {
    NSWindow* window = nil;
    id monitor = nil;
    std::vector<OrvelCore::Subscription> ends;
    ~Recording() {
        if (monitor) [NSEvent removeMonitor:monitor];
    }
};

}  // namespace

SettingsWindowSystem SettingsWindowSystem::live() {
    return {.makeWindow = makeSettings, .activate = [] { [NSApp activate]; }};
}

OnboardingWindowSystem OnboardingWindowSystem::live() {
    return {.makeWindow = makeGuide,
            .activate = [] { [NSApp activate]; },
            .isActive = [] { return static_cast<bool>(NSApp.isActive); },
            .observeActivation =
                [](std::function<void()> activated) {
                    return observeNotification(NSNotificationCenter.defaultCenter,
                                               NSApplicationDidBecomeActiveNotification,
                                               [activated](NSNotification*) { activated(); });
                }};
}

ShortcutRecorder::Hooks ShortcutRecorder::Hooks::live(std::function<AppWindow*()> window,
                                                      std::function<void()> pause,
                                                      std::function<void()> resume) {
    const auto box = std::make_shared<std::unique_ptr<Recording>>();
    const auto recording = [box, window = std::move(window)]() -> Recording* {
        auto* const live = dynamic_cast<LiveAppWindow*>(window());
        if (!*box && live) {
            *box = std::make_unique<Recording>();
            (*box)->window = live->window();
        }
        return box->get();
    };
    return {
        .pauseShortcuts = std::move(pause),
        .resumeShortcuts = std::move(resume),
        .watchKeys =
            [recording](OnKey onKey) {
                auto* const current = recording();
                if (!current) return;
                NSWindow* const own = current->window;
                current->monitor = [NSEvent
                    addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                 handler:^NSEvent*(NSEvent* event) {
                                                   if (!takes((__bridge void*)event.window,
                                                              (__bridge void*)own))
                                                       return event;
                                                   const auto tell = onKey;
                                                   NSString* const typed =
                                                       event.charactersIgnoringModifiers;
                                                   tell(event.keyCode,
                                                        CocoaMenu::modifiers(event.modifierFlags),
                                                        typed.length > 0
                                                            ? std::optional(Cocoa::string(typed))
                                                            : std::nullopt);
                                                   return nil;
                                                 }];
            },
        .watchEnds =
            [recording](std::function<void()> onEnd) {
                auto* const current = recording();
                if (!current) return;
                NSNotificationCenter* const center = NSNotificationCenter.defaultCenter;
                NSWindow* const own = current->window;
                const auto ofWindow = [onEnd, own](NSNotification* notification) {
                    if (notification.object == own) onEnd();
                };
                current->ends = {
                    observeNotification(center, NSWindowDidResignKeyNotification, ofWindow),
                    observeNotification(center, NSWindowWillCloseNotification, ofWindow),
                    observeNotification(center, NSApplicationDidResignActiveNotification,
                                        [onEnd](NSNotification*) { onEnd(); })};
            },
        .stopWatching = [box] { box->reset(); }};
}

}  // namespace OrvelModes
