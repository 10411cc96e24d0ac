#include "OrvelUI/Contrast.h"

#include <algorithm>
#include <cmath>

namespace OrvelUI::Contrast {

namespace {

Palette::Value channel(Palette::Value value, int shift) {
    return (value >> shift) & 0xFF;
}

double linear(Palette::Value value, int shift) {
    const double c = channel(value, shift) / 255.0;
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

}  // namespace

double luminance(Palette::Value value) {
    return 0.2126 * linear(value, 16) + 0.7152 * linear(value, 8) + 0.0722 * linear(value, 0);
}

double ratio(Palette::Value a, Palette::Value b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

Palette::Value blend(Palette::Value value, double alpha, Palette::Value over) {
    Palette::Value result = 0;
    for (const int shift : {16, 8, 0}) {
        const double mixed = channel(value, shift) * alpha + channel(over, shift) * (1 - alpha);
        result |= static_cast<Palette::Value>(std::lround(mixed)) << shift;
    }
    return result;
}

}  // namespace OrvelUI::Contrast
