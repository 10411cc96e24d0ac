#include <algorithm>

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>

#include "OrvelBlur/macOS/CocoaPanelContent.h"
#include "OrvelCovers/AppKitBadgePresenter.h"
#include "OrvelCovers/CoverLook.h"
#include "OrvelCovers/CoverLoop.h"
#include "OrvelCovers/PeekDetector.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#import "OrvelUI/macOS/LockViews.h"

namespace OrvelCovers {

using OrvelBlur::OverlayPanel;
using OrvelSystem::WindowServer;
using OrvelSystem::Workspace;

namespace {

constexpr CGEventSourceStateID session = kCGEventSourceStateCombinedSessionState;
/// Every modifier except Option, Caps Lock and the bits of the numeric pad and of function keys.
constexpr std::uint64_t otherModifiers = 0xff560000;

/// On any thread, unlike `NSEvent`.
bool optionDown() {
    return (CGEventSourceFlagsState(session) & kCGEventFlagMaskAlternate) != CGEventFlags{};
}

bool buttonDown() {
    return CGEventSourceButtonState(session, kCGMouseButtonLeft);
}

bool standsAbove(OrvelCore::WindowID window, OrvelCore::WindowID other) {
    const auto numbers = WindowServer::onScreenWindowNumbers();
    const auto place = [&](OrvelCore::WindowID number) {
        return std::ranges::find(numbers, number);
    };
    const auto upper = place(window);
    const auto lower = place(other);
    return upper == numbers.end() || lower == numbers.end() || upper < lower;
}

}  // namespace

CoverLoop::Sources CoverLoop::Sources::live(OrvelSystem::MainLoop& loop, std::int64_t ownPID) {
    Sources sources;
    sources.windows = WindowServer::onScreenWindows;
    sources.windowNumbers = WindowServer::onScreenWindowNumbers;
    sources.windowBounds = WindowServer::bounds;
    sources.displays = WindowServer::displayBounds;
    sources.activePID = []() -> std::optional<std::int64_t> {
        const auto app = Workspace::shared().frontmostApplication();
        return app ? std::optional(app->pid) : std::nullopt;
    };
    sources.peekPoint =
        [&loop, detector = std::make_shared<PeekDetector>()]() -> std::optional<OrvelCore::Point> {
        const NSEventModifierFlags flags = NSEvent.modifierFlags;
        const bool option = (flags & NSEventModifierFlagOption) == NSEventModifierFlagOption;
        const bool optionOnly = (static_cast<std::uint64_t>(flags) & otherModifiers) == 0;
        const double sinceKeyDown =
            CGEventSourceSecondsSinceLastEventType(session, kCGEventKeyDown);
        if (!detector->isActive(option, optionOnly, sinceKeyDown, loop.uptime()))
            return std::nullopt;
        return OrvelSystem::PointerState::location();
    };
    sources.mouseDown = buttonDown;
    sources.now = [&loop] { return loop.uptime(); };
    sources.ownPID = ownPID;
    return sources;
}

// Without `observe` the watcher polls, many times a second.
WindowWatcher::Reads WindowWatcher::Reads::live() {
    return {.numbers = WindowServer::onScreenWindowNumbers,
            .bounds = WindowServer::bounds,
            .button = buttonDown,
            .option = optionDown};
}

AppKitBadgePresenter::System AppKitBadgePresenter::System::live() {
    return {.makePanel =
                [](const OrvelCore::Rect& frame, int level) {
                    auto panel = OverlayPanel::make(frame, level);
                    // The cover below is visible around the rounded card.
                    panel->setOpacity(OverlayPanel::Layer::tint, 0);
                    panel->setOpacity(OverlayPanel::Layer::grain, 0);
                    return panel;
                },
            .makeContent =
                [](std::shared_ptr<OrvelUI::LockCardModel> model, bool unlocking,
                   std::function<void()> onTap, std::function<void()> onCancel) {
                    NSView<OrvelPlacedView>* const view = OrvelUI::makeAppLockBadge(
                        *model, unlocking, std::move(onTap), std::move(onCancel));
                    // The placement keeps the model alive as long as the view.
                    return std::make_shared<OrvelBlur::CocoaPanelContent>(
                        view, [view, model](NSSize panel) { return [view placementIn:panel]; });
                },
            .visibleFrame =
                [] {
                    NSScreen* const screen = NSScreen.mainScreen;
                    return screen ? OrvelSystem::Cocoa::rect(screen.visibleFrame)
                                  : OrvelCore::Rect{};
                },
            .scale = [] { return 1.0; },
            .isAbove = standsAbove};
}

}  // namespace OrvelCovers
