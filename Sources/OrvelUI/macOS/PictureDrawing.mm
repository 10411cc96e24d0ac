#include <algorithm>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/Symbols.h"
#include "OrvelUI/macOS/CocoaDrawing.h"

namespace OrvelUI::CocoaDrawing {

namespace Cocoa = OrvelSystem::Cocoa;

namespace {

double capWidth(const Keycaps& keycaps, const std::string& cap) {
    const LabelContent label{.text = cap, .size = keycaps.textSize(), .verbatim = true};
    return std::max(keycaps.height(), width(label) + 2 * keycaps.padding());
}

}  // namespace

void symbol(const SymbolContent& symbol, NSPoint centre) {
    NSImage* const named = [NSImage imageWithSystemSymbolName:Cocoa::string(symbol.name)
                                     accessibilityDescription:nil];
    NSImageSymbolConfiguration* const size =
        [NSImageSymbolConfiguration configurationWithPointSize:symbol.size
                                                        weight:NSFontWeightRegular];
    NSImageSymbolConfiguration* const ink =
        [NSImageSymbolConfiguration configurationWithPaletteColors:@[ color(symbol.ink) ]];
    NSImage* const image =
        [named imageWithSymbolConfiguration:[size configurationByApplyingConfiguration:ink]];
    if (image) {
        const NSSize actual = image.size;
        [image drawInRect:NSMakeRect(centre.x - actual.width / 2, centre.y - actual.height / 2,
                                     actual.width, actual.height)
                  fromRect:NSZeroRect
                 operation:NSCompositingOperationSourceOver
                  fraction:1
            respectFlipped:YES
                     hints:nil];
        return;
    }
    NSAffineTransform* const transform = [NSAffineTransform transform];
    [transform translateXBy:centre.x - symbol.size / 2 yBy:centre.y - symbol.size / 2];
    [transform scaleBy:symbol.size / Symbol::box];
    [color(symbol.ink) set];
    for (const auto& layer : Symbol::named(symbol.name).layers) {
        NSBezierPath* const shape = [transform transformBezierPath:path(layer.path)];
        if (layer.stroke > 0) {
            shape.lineWidth = layer.stroke * symbol.size / Symbol::box;
            shape.lineCapStyle = NSLineCapStyleRound;
            shape.lineJoinStyle = NSLineJoinStyleRound;
            [shape stroke];
        } else {
            [shape fill];
        }
    }
}

void avatar(const AvatarContent& avatar, NSRect rect) {
    NSImage* const image = avatar.picture ? Cocoa::image(*avatar.picture) : nil;
    const NSPoint centre = NSMakePoint(NSMidX(rect), NSMidY(rect));
    if (!image && !avatar.symbol.empty()) {
        symbol({.name = avatar.symbol,
                .size = rect.size.width,
                .ink = {Palette::lockInk, Palette::lockSecondaryOpacity(false)}},
               centre);
        return;
    }
    NSBezierPath* const circle = [NSBezierPath bezierPathWithOvalInRect:rect];
    [NSGraphicsContext saveGraphicsState];
    if (avatar.round) [circle addClip];
    if (image) {
        // The largest square in the middle of the picture.
        const NSSize size = image.size;
        const double side = std::min(size.width, size.height);
        [image drawInRect:rect
                  fromRect:NSMakeRect((size.width - side) / 2, (size.height - side) / 2, side, side)
                 operation:NSCompositingOperationSourceOver
                  fraction:1
            respectFlipped:YES
                     hints:nil];
    } else {
        NSGradient* const gradient =
            [[NSGradient alloc] initWithStartingColor:color({Palette::ink3Light})
                                          endingColor:color({Palette::ink2Light})];
        [gradient drawInBezierPath:avatar.round ? circle : [NSBezierPath bezierPathWithRect:rect]
                             angle:90];
        label({.text = avatar.initials,
               .size = 13,
               .weight = LabelContent::Weight::semibold,
               .verbatim = true},
              rect, NSTextAlignmentCenter);
    }
    [NSGraphicsContext restoreGraphicsState];
    if (!avatar.round) return;
    [color({Palette::lockInk, 0.14}) set];
    circle.lineWidth = 1;
    [circle stroke];
}

double width(const Keycaps& keycaps) {
    double total = 0;
    for (const auto& cap : keycaps.caps) total += capWidth(keycaps, cap) + Keycaps::gap;
    return std::max(0.0, total - Keycaps::gap);
}

void keycaps(const Keycaps& keycaps, const Keycaps::Inks& inks, NSRect rect) {
    double x = rect.origin.x;
    for (const auto& cap : keycaps.caps) {
        const NSRect frame = NSMakeRect(x, NSMidY(rect) - keycaps.height() / 2,
                                        capWidth(keycaps, cap), keycaps.height());
        NSBezierPath* const shape =
            [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(frame, 0.5, 0.5)
                                            xRadius:keycaps.cornerRadius()
                                            yRadius:keycaps.cornerRadius()];
        [color(inks.fill) set];
        [shape fill];
        [color(inks.border) set];
        [shape stroke];
        label({.text = cap,
               .size = keycaps.textSize(),
               .weight = LabelContent::Weight::medium,
               .ink = inks.text,
               .verbatim = true},
              frame, NSTextAlignmentCenter);
        x += frame.size.width + Keycaps::gap;
    }
}

void ring(NSPoint centre, double diameter, double stroke, double from, double fraction,
          const Palette::Ink& ink) {
    NSBezierPath* const arc = [NSBezierPath bezierPath];
    const double start = -90 + from * 360;
    [arc appendBezierPathWithArcWithCenter:centre
                                    radius:diameter / 2
                                startAngle:start
                                  endAngle:start + fraction * 360];
    arc.lineWidth = stroke;
    arc.lineCapStyle = NSLineCapStyleRound;
    [color(ink) set];
    [arc stroke];
}

void setShadow(const Palette::Shadow& style) {
    NSShadow* const shadow = [[NSShadow alloc] init];
    shadow.shadowColor = [NSColor colorWithWhite:0 alpha:style.opacity];
    shadow.shadowBlurRadius = style.radius;
    // Shadow offsets increase upwards, even in flipped views.
    shadow.shadowOffset = NSMakeSize(0, -style.drop);
    [shadow set];
}

}  // namespace OrvelUI::CocoaDrawing
