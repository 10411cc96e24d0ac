#pragma once

#include <QBitmap>
#include <QPainterPath>
#include <QSize>

/// Support for windows that are not rectangular.
namespace OrvelModes::Compositing {

/// Whether a compositing manager blends windows, so that they can have smooth edges and a shadow.
bool isOn();
/// The window shape to use without a compositing manager: every pixel of which `outline` covers at
/// least half.
QBitmap mask(const QPainterPath& outline, const QSize& size);

}  // namespace OrvelModes::Compositing
