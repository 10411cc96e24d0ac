#pragma once

#include "OrvelUI/Controls.h"
#include "OrvelUI/Qt/Drawing.h"

/// How the small shared controls are drawn. All lengths are points.
namespace OrvelUI::Drawing {

double keycapsWidth(const Keycaps& keycaps);
void keycaps(QPainter& painter, const Keycaps& keycaps, const Keycaps::Inks& inks,
             QPointF leftCentre);

/// `position` is where the knob stands, from off at 0 to on at 1.
void islandSwitch(QPainter& painter, double position, const QRectF& rect);

/// Around a control that has the keyboard.
void focusRing(QPainter& painter, const QRectF& rect, double radius,
               const Palette::Ink& ink = {Palette::accentDark});

}  // namespace OrvelUI::Drawing
