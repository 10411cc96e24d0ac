#pragma once

#include "OrvelUI/Controls.h"
#include "OrvelUI/Qt/Drawing.h"

/// Draws the small shared controls. All lengths are in points.
namespace OrvelUI::Drawing {

double keycapsWidth(const Keycaps& keycaps);
void keycaps(QPainter& painter, const Keycaps& keycaps, const Keycaps::Inks& inks,
             QPointF leftCentre);

/// A colour between two; `share` is 0 for `from` and 1 for `to`.
QColor mixed(const Palette::Ink& from, const Palette::Ink& to, double share);

/// `turn` is the position of the arc on the ring, in turns.
void spinner(QPainter& painter, QPointF centre, double turn, const Palette::Ink& ring,
             const Palette::Ink& arc);

/// `position` is that of the knob: 0 is off, 1 is on.
void islandSwitch(QPainter& painter, double position, const QRectF& rect);

/// Drawn around a control that has the keyboard focus.
void focusRing(QPainter& painter, const QRectF& rect, double radius,
               const Palette::Ink& ink = {Palette::accentDark});

}  // namespace OrvelUI::Drawing
