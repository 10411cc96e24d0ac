#include "OrvelUI/macOS/SceneDrawing.h"

#include <cmath>
#include <string>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/MenuBarIcon.h"
#include "OrvelUI/macOS/CocoaDrawing.h"

namespace OrvelUI::CocoaDrawing {

namespace Cocoa = OrvelSystem::Cocoa;

namespace {

NSBezierPath* rounded(NSRect rect, double radius) {
    return [NSBezierPath bezierPathWithRoundedRect:rect xRadius:radius yRadius:radius];
}

/// An image of that many pixels, drawn by `draw` with the origin at the bottom left. Nil if there
/// is no memory for it.
NSImage* raster(NSSize pixels, void (^draw)(NSRect)) {
    NSBitmapImageRep* const bitmap =
        Cocoa::bitmap(static_cast<int>(pixels.width), static_cast<int>(pixels.height));
    NSGraphicsContext* const context =
        bitmap ? [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap] : nil;
    if (!context) return nil;
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = context;
    context.imageInterpolation = NSImageInterpolationHigh;
    draw(NSMakeRect(0, 0, pixels.width, pixels.height));
    [NSGraphicsContext restoreGraphicsState];
    NSImage* const image = [[NSImage alloc] initWithSize:pixels];
    [image addRepresentation:bitmap];
    return image;
}

/// The desktop without a cover; `width` is in pixels.
NSImage* desktop(double width) {
    const auto& scene = DesktopScene::standard();
    const double scale = width / DesktopScene::size.width;
    const NSSize size = NSMakeSize(width, std::round(DesktopScene::size.height * scale));
    return raster(size, ^(NSRect rect) {
      // y grows downwards in the scene.
      NSAffineTransform* const transform = [NSAffineTransform transform];
      [transform translateXBy:0 yBy:rect.size.height];
      [transform scaleXBy:scale yBy:-scale];
      [transform concat];
      desktopGradient(NSMakeRect(0, 0, DesktopScene::size.width, DesktopScene::size.height), 0);
      for (const auto& shape : scene.shapes) {
          [color(shape.ink) set];
          [path(shape.path) fill];
      }
    });
}

NSImage* blurred(NSImage* image, double radius) {
    for (const auto& size : blurSizes({image.size.width, image.size.height}, radius)) {
        NSImage* const source = image;
        image = raster(NSMakeSize(size.width, size.height), ^(NSRect rect) {
          [source drawInRect:rect
                    fromRect:NSZeroRect
                   operation:NSCompositingOperationCopy
                    fraction:1];
        });
    }
    return image;
}

NSRect scaled(const OrvelCore::Rect& rect, double unit) {
    return NSMakeRect(rect.x * unit, rect.y * unit, rect.width * unit, rect.height * unit);
}

/// Draws into the rectangle at the origin that is `unit` times the scene's size.
void lockCard(const SceneCover& cover, double unit) {
    auto card = SceneCard::of(cover);
    NSAffineTransform* const transform = [NSAffineTransform transform];
    [transform scaleBy:unit];
    for (const auto& shape : card.shapes) {
        [color({shape.ink.value, shape.ink.opacity * cover.card}) set];
        [[transform transformBezierPath:path(shape.path)] fill];
    }
    for (auto& [mark, centre] : card.marks) {
        mark.size *= unit;
        mark.ink.opacity *= cover.card;
        symbol(mark, NSMakePoint(centre.x * unit, centre.y * unit));
    }
    if (!card.text) return;
    auto& [text, area] = *card.text;
    text.size *= unit;
    text.ink.opacity *= cover.card;
    label(text, scaled(area, unit));
}

void concatTranslation(double x, double y) {
    NSAffineTransform* const transform = [NSAffineTransform transform];
    [transform translateXBy:x yBy:y];
    [transform concat];
}

}  // namespace

void desktopGradient(NSRect rect, double radius) {
    NSGradient* const gradient =
        [[NSGradient alloc] initWithStartingColor:color({Palette::desktopTop})
                                      endingColor:color({Palette::desktopBottom})];
    // In a flipped view, this angle is that from the top to the bottom.
    [gradient drawInBezierPath:rounded(rect, radius) angle:90];
}

void lockedScene(NSRect rect, double radius, const SceneCover& cover) {
    constexpr double pixelsPerPoint = 2;  // sharp enough for a blur on any display
    const double width = std::round(rect.size.width * pixelsPerPoint);
    NSImage* image = desktop(width);
    if (!cover.look.solid)
        image = blurred(image, cover.look.radius * cover.progress * width /
                                   (DesktopScene::size.width * DesktopScene::pointsPerUnit));
    [NSGraphicsContext saveGraphicsState];
    [rounded(rect, radius) addClip];
    [image drawInRect:rect
              fromRect:NSZeroRect
             operation:NSCompositingOperationSourceOver
              fraction:1
        respectFlipped:YES
                 hints:nil];
    OrvelCore::Color tint =
        cover.look.solid ? Palette::solidColor(cover.look) : Palette::tintColor(cover.look);
    tint.alpha *= cover.progress;
    [Cocoa::color(tint) set];
    [[NSBezierPath bezierPathWithRect:rect] fill];
    if (cover.card > 0) {
        concatTranslation(rect.origin.x, rect.origin.y);
        lockCard(cover, rect.size.width / DesktopScene::size.width);
    }
    [NSGraphicsContext restoreGraphicsState];
}

void menuBar(NSRect rect, const MenuBarDrawing& drawing) {
    constexpr double radius = 10;
    [NSGraphicsContext saveGraphicsState];
    [rounded(rect, radius) addClip];
    desktopGradient(rect, radius);
    concatTranslation(rect.origin.x, rect.origin.y);
    const NSRect bar = NSMakeRect(0, 0, rect.size.width, MenuBarDrawing::barHeight);
    [color({Palette::island, 0.34}) set];
    [[NSBezierPath bezierPathWithRect:bar] fill];
    const double middle = NSMidY(bar);
    const LabelContent clock{.text = std::string(MenuBarDrawing::clock),
                             .size = 12,
                             .weight = LabelContent::Weight::medium,
                             .verbatim = true};
    const double clockWidth = width(clock);
    const auto layout = drawing.layout(bar.size.width, clockWidth);
    label(clock, NSMakeRect(layout.clock, 0, clockWidth, bar.size.height));
    [color({Palette::lockInk, 0.45}) set];
    for (const double x : layout.dots)
        [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(x - 5, middle - 5, 10, 10)] fill];
    if (layout.icon) {
        [color({Palette::accentDark, 0.4}) set];
        [rounded(NSMakeRect(*layout.icon - 4, middle - 11, 26, 22), 6) fill];
        concatTranslation(*layout.icon, middle - MenuBarIcon::size.height / 2);
        [color({}) set];
        NSBezierPath* const outline =
            path(MenuBarIcon::image(OrvelCore::MenuBarIconState::rest).outline);
        outline.lineWidth = MenuBarIcon::lineWidth;
        [outline stroke];
    }
    [NSGraphicsContext restoreGraphicsState];
}

}  // namespace OrvelUI::CocoaDrawing
