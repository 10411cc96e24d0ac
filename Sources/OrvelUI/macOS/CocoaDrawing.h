#pragma once

#include <string>

#import <AppKit/AppKit.h>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/Path.h"

/// Draws portable values with Cocoa. All lengths are in points, in the coordinates of a flipped
/// view.
namespace OrvelUI::CocoaDrawing {

NSColor* color(const Palette::Ink& ink);
NSBezierPath* path(const Path& path);
NSFont* font(double size, LabelContent::Weight weight);
NSString* text(const LabelContent& label);

/// Draws one line, vertically centred, with an ellipsis before the tail if it is too long.
void label(const LabelContent& label, NSRect rect, NSTextAlignment alignment = NSTextAlignmentLeft);
/// Draws up to two lines from the top of the rectangle; returns their height.
double wrappedLabel(const LabelContent& label, NSRect rect);
double width(const LabelContent& label);
/// Draws the system's symbol with that name, or the product's own if there is none.
void symbol(const SymbolContent& symbol, NSPoint centre);
void avatar(const AvatarContent& avatar, NSRect rect);
/// Starts at the rectangle's left edge.
void keycaps(const Keycaps& keycaps, const Keycaps::Inks& inks, NSRect rect);
double width(const Keycaps& keycaps);
void strokeRounded(NSRect rect, double radius, double width, const Palette::Ink& ink);
/// Draws `fraction` of a ring, clockwise, starting `from` of a turn after the top.
void ring(NSPoint centre, double diameter, double stroke, double from, double fraction,
          const Palette::Ink& ink);

/// Applies to what is drawn next, until the graphics state is restored.
void setShadow(const Palette::Shadow& style);

}  // namespace OrvelUI::CocoaDrawing
