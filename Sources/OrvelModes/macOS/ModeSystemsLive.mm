#include <algorithm>
#include <limits>

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#import <IOKit/pwr_mgt/IOPMLib.h>

#include "OrvelBlur/macOS/CocoaPanelContent.h"
#include "OrvelModes/Blur/FocusBlurSystem.h"
#include "OrvelModes/Blur/IdleController.h"
#include "OrvelModes/Blur/LiveModeSurface.h"
#include "OrvelModes/Blur/QuickBlurSystem.h"
#include "OrvelModes/Feedback/LockFeedbackRunner.h"
#include "OrvelSystem/Announcer.h"
#include "OrvelSystem/Haptics.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/Displays.h"
#include "OrvelUI/NoticePill.h"
#import "OrvelUI/macOS/NoticePillView.h"

namespace OrvelModes {

using OrvelSystem::WindowServer;
using OrvelSystem::Workspace;
using OrvelUI::QuickBlurPill;
namespace Appearance = OrvelSystem::Appearance;
namespace Cocoa = OrvelSystem::Cocoa;

namespace {

std::shared_ptr<OrvelBlur::PanelContent> makePill(const OrvelCore::Rect& display,
                                                  std::function<void()> onReveal) {
    const auto notch = OrvelUI::notchOf(OrvelSystem::Display::screenAt({display.x, display.y}));
    OrvelNoticePillView* const view =
        [[OrvelNoticePillView alloc] initWithContent:QuickBlurPill::content(notch)
                                               notch:notch
                                               onTap:std::move(onReveal)];
    [view fadeOutAfter:QuickBlurPill::visibleFor
               seconds:Appearance::reducesMotion() ? 0 : QuickBlurPill::fadeSeconds];
    return std::make_shared<OrvelBlur::CocoaPanelContent>(
        view, [view](NSSize panel) { return [view placementIn:panel]; });
}

std::optional<std::int64_t> frontPID() {
    const auto app = Workspace::shared().frontmostApplication();
    return app ? std::optional(app->pid) : std::nullopt;
}

double secondsSinceInput() {
    double least = std::numeric_limits<double>::infinity();
    for (const CGEventType type :
         {kCGEventMouseMoved, kCGEventKeyDown, kCGEventLeftMouseDown, kCGEventRightMouseDown,
          kCGEventOtherMouseDown, kCGEventScrollWheel, kCGEventFlagsChanged,
          kCGEventLeftMouseDragged})
        least = std::min(least, CGEventSourceSecondsSinceLastEventType(
                                    kCGEventSourceStateCombinedSessionState, type));
    return least;
}

bool displayKeptAwake() {
    @autoreleasepool {
        CFDictionaryRef found = nullptr;
        if (IOPMCopyAssertionsStatus(&found) != kIOReturnSuccess || !found) return false;
        const auto status = Cocoa::dictionary((__bridge_transfer NSDictionary*)found);
        const auto entry = status.find("PreventUserIdleDisplaySleep");
        const auto* const level =
            entry == status.end() ? nullptr : entry->second.get<std::int64_t>();
        return level && *level > 0;
    }
}

/// Whether the session is locked, or another user's session is on the screen.
bool sessionIsAway() {
    @autoreleasepool {
        const auto session =
            Cocoa::dictionary((__bridge_transfer NSDictionary*)CGSessionCopyCurrentDictionary());
        const auto says = [&](const char* key, bool value) {
            const auto entry = session.find(key);
            if (entry == session.end()) return false;
            if (const bool* const flag = entry->second.get<bool>()) return *flag == value;
            const auto* const number = entry->second.get<std::int64_t>();
            return number && (*number != 0) == value;
        };
        return says("CGSSessionScreenIsLocked", true) || says("kCGSSessionOnConsoleKey", false);
    }
}

}  // namespace

QuickBlurSystem QuickBlurSystem::live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                      std::int64_t ownPID,
                                      std::function<OrvelCore::OverlayLook()> look,
                                      std::function<bool()> macLocked) {
    QuickBlurSystem system;
    system.displays = WindowServer::displayBounds;
    system.makeSurface = LiveModeSurface::forQuickBlur(loop, backend, std::move(look), macLocked);
    system.frontApp = [ownPID]() -> std::optional<std::int64_t> {
        const auto front = frontPID();
        return front == ownPID ? std::nullopt : front;
    };
    system.activateOrvel = [] { [NSApp activate]; };
    system.activateApp = [](std::int64_t pid) { Workspace::shared().activate(pid); };
    system.reduceMotion = [] { return Appearance::reducesMotion(); };
    system.pill = makePill;
    system.macLocked = std::move(macLocked);
    return system;
}

FocusBlurSystem FocusBlurSystem::live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                      std::int64_t ownPID,
                                      std::function<OrvelCore::OverlayLook()> look) {
    FocusBlurSystem system;
    system.windows = WindowServer::onScreenWindows;
    system.displays = WindowServer::displayBounds;
    system.makeSurface = LiveModeSurface::forFocusBlur(loop, backend, std::move(look));
    system.ownPID = ownPID;
    system.reduceMotion = [] { return Appearance::reducesMotion(); };
    system.frontPID = OrvelModes::frontPID;
    return system;
}

IdleSources IdleSources::live(OrvelSystem::MainLoop& loop) {
    return {.idleSeconds = secondsSinceInput,
            .displayKeptAwake = OrvelModes::displayKeptAwake,
            .sessionLocked = sessionIsAway,
            .now = [&loop] { return loop.uptime(); }};
}

LockFeedbackRunner::Outputs LockFeedbackRunner::Outputs::live(OrvelSystem::SoundPlayer& player) {
    return {.announce = OrvelSystem::Announcer::announce,
            .play = [&player](OrvelCore::LockSound sound) { player.play(sound); },
            .haptic = OrvelSystem::Haptics::perform};
}

}  // namespace OrvelModes
