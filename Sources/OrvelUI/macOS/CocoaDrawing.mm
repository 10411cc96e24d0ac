#include "OrvelUI/macOS/CocoaDrawing.h"

#include <algorithm>
#include <cmath>

#include "OrvelCore/Match.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelUI::CocoaDrawing {

namespace Cocoa = OrvelSystem::Cocoa;

namespace {

NSPoint point(OrvelCore::Point p) {
    return NSMakePoint(p.x, p.y);
}

NSDictionary* attributes(const LabelContent& label, NSTextAlignment alignment,
                         NSLineBreakMode breaks) {
    NSMutableParagraphStyle* const paragraph = [[NSMutableParagraphStyle alloc] init];
    paragraph.alignment = alignment;
    paragraph.lineBreakMode = breaks;
    return @{
        NSFontAttributeName : font(label.size, label.weight),
        NSForegroundColorAttributeName : color(label.ink),
        NSParagraphStyleAttributeName : paragraph
    };
}

}  // namespace

NSColor* color(const Palette::Ink& ink) {
    return Cocoa::color(ink.color());
}

NSBezierPath* path(const Path& path) {
    NSBezierPath* const result = [NSBezierPath bezierPath];
    for (const auto& command : path.commands())
        OrvelCore::match(
            command, [&](const Path::Move& move) { [result moveToPoint:point(move.to)]; },
            [&](const Path::Line& line) { [result lineToPoint:point(line.to)]; },
            [&](const Path::Curve& curve) {
                [result curveToPoint:point(curve.to)
                       controlPoint1:point(curve.control1)
                       controlPoint2:point(curve.control2)];
            },
            [&](const Path::Close&) { [result closePath]; });
    // Overlaps of a symbol's outlines are holes.
    result.windingRule = NSWindingRuleEvenOdd;
    return result;
}

void strokeRounded(NSRect rect, double radius, double width, const Palette::Ink& ink) {
    NSBezierPath* const shape = [NSBezierPath bezierPathWithRoundedRect:rect
                                                                xRadius:radius
                                                                yRadius:radius];
    shape.lineWidth = width;
    [color(ink) set];
    [shape stroke];
}

NSFont* font(double size, LabelContent::Weight weight) {
    const NSFontWeight value = weight == LabelContent::Weight::semibold ? NSFontWeightSemibold
                               : weight == LabelContent::Weight::medium ? NSFontWeightMedium
                                                                        : NSFontWeightRegular;
    // Digits of equal width, so that a clock does not move when the time changes.
    return [NSFont monospacedDigitSystemFontOfSize:size weight:value];
}

NSString* text(const LabelContent& label) {
    return Cocoa::string(label.text);
}

void label(const LabelContent& label, NSRect rect, NSTextAlignment alignment) {
    NSDictionary* const style = attributes(label, alignment, NSLineBreakByTruncatingTail);
    NSString* const tail = Cocoa::string(label.tail);
    const NSSize tailSize = [tail sizeWithAttributes:style];
    NSString* const head = text(label);
    const NSSize size = [head sizeWithAttributes:style];
    const double height = std::max(size.height, tailSize.height);
    const double top = rect.origin.y + (rect.size.height - height) / 2;
    const double room = std::max(0.0, rect.size.width - tailSize.width);
    const double used = alignment == NSTextAlignmentLeft ? std::min(size.width, room) : room;
    // Half a point wider, because rounding would otherwise cut a text that just fits.
    [head drawInRect:NSMakeRect(rect.origin.x, top, used + 0.5, height) withAttributes:style];
    if (tail.length > 0)
        [tail drawInRect:NSMakeRect(rect.origin.x + used, top, tailSize.width + 0.5, height)
            withAttributes:style];
}

double wrappedLabel(const LabelContent& label, NSRect rect) {
    NSDictionary* const style = attributes(label, NSTextAlignmentLeft, NSLineBreakByWordWrapping);
    const double line = [@"X" sizeWithAttributes:style].height;
    const NSRect needed = [text(label) boundingRectWithSize:NSMakeSize(rect.size.width, 2 * line)
                                                    options:NSStringDrawingUsesLineFragmentOrigin |
                                                            NSStringDrawingTruncatesLastVisibleLine
                                                 attributes:style
                                                    context:nil];
    const double height = std::min(std::ceil(needed.size.height), std::ceil(2 * line));
    [text(label)
        drawWithRect:NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, height)
             options:NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine
          attributes:style
             context:nil];
    return height;
}

double width(const LabelContent& label) {
    NSDictionary* const style = attributes(label, NSTextAlignmentLeft, NSLineBreakByClipping);
    NSString* const whole = Cocoa::string(label.text + label.tail);
    return std::ceil([whole sizeWithAttributes:style].width);
}

}  // namespace OrvelUI::CocoaDrawing
