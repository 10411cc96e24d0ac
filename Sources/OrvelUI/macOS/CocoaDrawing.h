#pragma once

#include <string>

#import <AppKit/AppKit.h>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/Path.h"

/// How portable values are drawn with Cocoa. Points, in a flipped view's coordinates.
namespace OrvelUI::CocoaDrawing {

NSColor* color(const Palette::Ink& ink);
NSBezierPath* path(const Path& path);
NSFont* font(double size, LabelContent::Weight weight);
NSString* text(const LabelContent& label);

/// One line in the middle of the rectangle's height, cut with an ellipsis before the tail.
void label(const LabelContent& label, NSRect rect, NSTextAlignment alignment = NSTextAlignmentLeft);
/// Up to two lines from the top of the rectangle; gives their height.
double wrappedLabel(const LabelContent& label, NSRect rect);
double width(const LabelContent& label);
/// The system's symbol of that name, or the product's own drawing of it.
void symbol(const SymbolContent& symbol, NSPoint centre);
void avatar(const AvatarContent& avatar, NSRect rect);
/// From the rectangle's left edge.
void keycaps(const Keycaps& keycaps, const Keycaps::Inks& inks, NSRect rect);
double width(const Keycaps& keycaps);
/// A ring of which `fraction` is drawn from the top, clockwise.
void ring(NSPoint centre, double diameter, double stroke, double from, double fraction,
          const Palette::Ink& ink);

/// For what is drawn next, until the graphics state is restored.
void setShadow(double opacity, double radius, double drop);

}  // namespace OrvelUI::CocoaDrawing
