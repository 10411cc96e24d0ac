#import "OrvelUI/macOS/FormPictures.h"

#include <cmath>
#include <numbers>
#include <string>

#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/FormViews.h"
#include "OrvelUI/macOS/SceneDrawing.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;

namespace OrvelUI::CocoaControls {

namespace {

// In points.
constexpr double desktopWidth = 272;
constexpr double desktopHeight =
    desktopWidth * DesktopScene::size.height / DesktopScene::size.width;
constexpr double pulseReach = 5;
constexpr double pulsePeriod = 1.8;  // seconds
constexpr double dotSide = 7;
constexpr double dotStep = 16;

void describe(NSView* view, NSString* role, const std::string& name) {
    view.accessibilityElement = YES;
    view.accessibilityRole = role;
    view.accessibilityLabel = Cocoa::string(name);
}

}  // namespace

NSView* miniDesktop(const MiniDesktop& content) {
    const bool moves = content.animated && !OrvelSystem::Appearance::reducesMotion();
    NSView* const view = [[OrvelDrawnView alloc]
        initWithSize:NSMakeSize(desktopWidth, desktopHeight)
               moves:moves
             drawing:[moves](NSRect rect, double seconds) {
                 const auto now = moves ? LockingPicture::at(seconds) : LockingPicture{};
                 Drawing::lockedScene(rect, 12,
                                      {.look = OrvelCore::OverlayLook::standardLock,
                                       .progress = now.blur,
                                       .card = now.card,
                                       .speaks = true});
             }];
    describe(view, NSAccessibilityImageRole, MiniDesktop::label);
    return view;
}

NSView* menuBarDrawing(const MenuBarDrawing& content) {
    NSView* const view = [[OrvelDrawnView alloc]
        initWithSize:NSMakeSize(MenuBarDrawing::size.width, MenuBarDrawing::size.height)
               moves:false
             drawing:[content](NSRect rect, double) { Drawing::menuBar(rect, content); }];
    describe(view, NSAccessibilityImageRole, content.label());
    return view;
}

NSView* pageDots(const PageDots& dots, const FormColors& colors) {
    NSView* const view = [[OrvelDrawnView alloc]
        initWithSize:NSMakeSize((dots.count - 1) * dotStep + dotSide, dotSide)
               moves:false
             drawing:[dots, colors](NSRect, double) {
                 for (int i = 0; i < dots.count; ++i) {
                     const bool isCurrent = i + 1 == dots.current;
                     [Drawing::color(isCurrent ? colors.accent() : colors.track(false).fill) set];
                     [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(i * dotStep, 0, dotSide,
                                                                        dotSide)] fill];
                 }
             }];
    describe(view, NSAccessibilityStaticTextRole, dots.spoken());
    return view;
}

NSView* pulsingKeycaps(const PulsingKeycaps& content, const FormColors& colors) {
    const auto& keycaps = content.keycaps;
    const bool pulses =
        content.pulses &&
        PulsingKeycaps::of(keycaps, OrvelSystem::Appearance::reducesMotion()).pulses;
    // Includes space for the pulse even without one, so that nothing moves when it ends.
    const double reach = keycaps.large ? pulseReach : 0;
    NSView* const view = [[OrvelDrawnView alloc]
        initWithSize:NSMakeSize(Drawing::width(keycaps) + 2 * reach, keycaps.height() + 2 * reach)
               moves:pulses
             drawing:[keycaps, colors, reach](NSRect rect, double seconds) {
                 Drawing::keycaps(keycaps, keycaps.inks(colors.theme),
                                  NSInsetRect(rect, reach, reach));
                 const double glow =
                     0.5 - 0.5 * std::cos(2 * std::numbers::pi * seconds / pulsePeriod);
                 if (glow <= 0) return;
                 auto ink = colors.accent();
                 ink.opacity = 0.75 * glow;
                 Drawing::strokeRounded(NSInsetRect(rect, 1, 1), 10, 2, ink);
             }];
    describe(view, NSAccessibilityStaticTextRole, Keycaps::spoken(keycaps.caps));
    return view;
}

}  // namespace OrvelUI::CocoaControls
