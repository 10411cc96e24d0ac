#pragma once

#include "OrvelUI/Palette.h"

/// Relative luminance and contrast as WCAG 2 defines them.
namespace OrvelUI::Contrast {

/// 0 for black to 1 for white.
double luminance(Palette::Value value);
/// 1 for equal colours to 21 for black on white, in either order.
double ratio(Palette::Value a, Palette::Value b);
/// What `value` looks like when it is laid over an opaque colour.
Palette::Value blend(Palette::Value value, double alpha, Palette::Value over);

}  // namespace OrvelUI::Contrast
