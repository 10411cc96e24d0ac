#pragma once

#include <QBitmap>
#include <QPainterPath>
#include <QSize>

/// Windows that are no rectangles.
namespace OrvelModes::Compositing {

/// Whether somebody blends windows, so that one can have smooth edges and a shadow.
bool isOn();
/// What a window is cut to where nobody does: every pixel of which `outline` covers at least half.
QBitmap mask(const QPainterPath& outline, const QSize& size);

}  // namespace OrvelModes::Compositing
