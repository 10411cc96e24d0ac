#pragma once

#include <algorithm>

namespace OrvelBlur {

struct Easing {
    /// `t` outside 0 to 1 is clamped.
    static double easeOut(double t) {
        const double rest = 1 - std::clamp(t, 0.0, 1.0);
        return 1 - rest * rest * rest;
    }
};

}  // namespace OrvelBlur
