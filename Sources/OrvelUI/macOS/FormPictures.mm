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
constexpr NSSize thumbnailSize{140, 88};
constexpr double thumbnailRadius = 8;
constexpr double pulseReach = 5;
constexpr double pulsePeriod = 1.8;  // seconds
constexpr double dotSide = 7;
constexpr double dotStep = 16;

void describe(NSView* view, NSString* role, const std::string& name) {
    view.accessibilityElement = YES;
    view.accessibilityRole = role;
    view.accessibilityLabel = Cocoa::string(name);
}

void strokeRounded(NSRect rect, double radius, double width, const Palette::Ink& ink) {
    NSBezierPath* const shape = [NSBezierPath bezierPathWithRoundedRect:rect
                                                                xRadius:radius
                                                                yRadius:radius];
    shape.lineWidth = width;
    [Drawing::color(ink) set];
    [shape stroke];
}

/// A button that shows only `image`; `chosen` is read out.
NSButton* pictureButton(NSImage* image, const std::string& title, const std::string& hint,
                        bool chosen, const Handler<>& choose, OrvelActionView* keeper) {
    NSButton* const button = [NSButton buttonWithTitle:@"" target:nil action:nil];
    [button setButtonType:NSButtonTypeToggle];
    button.bordered = NO;
    button.image = image;
    button.imagePosition = NSImageOnly;
    button.state = chosen ? NSControlStateValueOn : NSControlStateValueOff;
    button.accessibilityRole = NSAccessibilityCheckBoxRole;
    button.toolTip = Cocoa::string(title);
    button.accessibilityLabel = Cocoa::string(title);
    button.accessibilityHelp = Cocoa::string(hint);
    button.frame = NSMakeRect(0, 0, image.size.width, image.size.height);
    [keeper connect:button to:[choose](id) { choose(); }];
    return button;
}

NSImage* thumbnail(const StyleThumbnails::StyleThumbnail& style, const FormColors& colors) {
    return [NSImage
         imageWithSize:thumbnailSize
               flipped:YES
        drawingHandler:^BOOL(NSRect all) {
          const NSRect picture = NSInsetRect(all, 3, 3);
          Drawing::lockedScene(picture, thumbnailRadius,
                               {.look = style.look, .card = 1, .showsClock = style.showsClock});
          if (style.chosen)
              strokeRounded(NSInsetRect(picture, -1.75, -1.75), thumbnailRadius + 1.75, 2.5,
                            colors.accent());
          else
              strokeRounded(NSInsetRect(picture, 0.5, 0.5), thumbnailRadius, 1, colors.hairline());
          return YES;
        }];
}

NSImage* cornerSpot(const CornerPicker::Target& target, const FormColors& colors) {
    return [NSImage
         imageWithSize:NSMakeSize(CornerPicker::targetSide, CornerPicker::targetSide)
               flipped:YES
        drawingHandler:^BOOL(NSRect all) {
          const double inset = (CornerPicker::targetSide - CornerPicker::spotSide) / 2 + 1;
          NSBezierPath* const spot =
              [NSBezierPath bezierPathWithOvalInRect:NSInsetRect(all, inset, inset)];
          const NSPoint centre = NSMakePoint(NSMidX(all), NSMidY(all));
          // Drawn over the desktop picture, whose colours are the same in every theme.
          [Drawing::color(target.chosen ? colors.accent() : Palette::Ink{Palette::island, 0.35})
              set];
          [spot fill];
          [Drawing::color({Palette::lockInk, target.chosen ? 1 : 0.75}) set];
          spot.lineWidth = 1.5;
          [spot stroke];
          if (target.chosen)
              Drawing::symbol({.name = "checkmark", .size = 14, .ink = colors.chip(true).text},
                              centre);
          else if (target.marked)
              Drawing::symbol(
                  {.name = "exclamationmark.triangle", .size = 13, .ink = {Palette::lockInk}},
                  centre);
          return YES;
        }];
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
                 strokeRounded(NSInsetRect(rect, 1, 1), 10, 2, ink);
             }];
    describe(view, NSAccessibilityStaticTextRole, Keycaps::spoken(keycaps.caps));
    return view;
}

NSView* styleThumbnails(const StyleThumbnails& content, const FormColors& colors,
                        OrvelActionView* keeper) {
    OrvelActionView* const row = stack(false, 8);
    for (const auto& style : content.styles) {
        OrvelActionView* const column = stack(true, 2);
        column.centred = YES;
        [column add:pictureButton(thumbnail(style, colors), style.title, style.detail, style.chosen,
                                  style.choose, keeper)];
        [column add:label({.text = style.title}, colors)];
        [column add:label({.text = style.detail, .role = TextRole::note}, colors)];
        [row add:column];
    }
    return row;
}

NSView* cornerPicker(const CornerPicker& content, const FormColors& colors,
                     OrvelActionView* keeper) {
    NSView* const display = [[OrvelDrawnView alloc]
        initWithSize:NSMakeSize(CornerPicker::display.width, CornerPicker::display.height)
               moves:false
             drawing:[colors](NSRect rect, double) {
                 constexpr double radius = 12;
                 Drawing::desktopGradient(rect, radius);
                 strokeRounded(NSInsetRect(rect, 0.5, 0.5), radius, 1, colors.hairline());
             }];
    for (const auto& target : content.targets) {
        NSButton* const button = pictureButton(cornerSpot(target, colors), target.title,
                                               target.hint, target.chosen, target.pick, keeper);
        const auto place = CornerPicker::place(target.corner);
        button.frame = NSMakeRect(place.x, place.y, place.width, place.height);
        [display addSubview:button];
    }
    return display;
}

}  // namespace OrvelUI::CocoaControls
