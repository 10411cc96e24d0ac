#pragma once

#include <algorithm>

namespace OrvelBlur {

struct Easing {
    /// A cubic ease-out from 0 to 1; `t` is clamped to that range.
    static double easeOut(double t) {
        const double rest = 1 - std::clamp(t, 0.0, 1.0);
        return 1 - rest * rest * rest;
    }
};

}  // namespace OrvelBlur
