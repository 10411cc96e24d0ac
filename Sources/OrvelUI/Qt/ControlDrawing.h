#pragma once

#include "OrvelUI/Controls.h"
#include "OrvelUI/Qt/Drawing.h"

/// Draws the small shared controls. All lengths are in points.
namespace OrvelUI::Drawing {

double keycapsWidth(const Keycaps& keycaps);
void keycaps(QPainter& painter, const Keycaps& keycaps, const Keycaps::Inks& inks,
             QPointF leftCentre);

/// `position` is that of the knob: 0 is off, 1 is on.
void islandSwitch(QPainter& painter, double position, const QRectF& rect);

/// Drawn around a control that has the keyboard focus.
void focusRing(QPainter& painter, const QRectF& rect, double radius,
               const Palette::Ink& ink = {Palette::accentDark});

}  // namespace OrvelUI::Drawing
