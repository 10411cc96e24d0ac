#pragma once

#include "OrvelUI/Palette.h"

/// Relative luminance and contrast as defined by WCAG 2.
namespace OrvelUI::Contrast {

/// 0 for black to 1 for white.
double luminance(Palette::Value value);
/// 1 for equal colours to 21 for black and white, in either order.
double ratio(Palette::Value a, Palette::Value b);
/// The colour that results from drawing `value` with opacity `alpha` (0 to 1) over the opaque
/// colour `over`.
Palette::Value blend(Palette::Value value, double alpha, Palette::Value over);

}  // namespace OrvelUI::Contrast
