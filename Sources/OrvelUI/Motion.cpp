#include "OrvelUI/Motion.h"

#include <cmath>
#include <numbers>

namespace OrvelUI {

double Spring::value(double seconds) const {
    if (seconds <= 0) return 0;
    const double decay = damping * 2 * std::numbers::pi / response;
    const double swing = decay * std::sqrt(1 - damping * damping) / damping;
    const double phase = swing * seconds;
    return 1 - std::exp(-decay * seconds) * (std::cos(phase) + decay / swing * std::sin(phase));
}

double Spring::settlingTime() const {
    const double decay = damping * 2 * std::numbers::pi / response;
    // The oscillation is a sine with this amplitude, multiplied by the decay.
    const double amplitude = 1 / std::sqrt(1 - damping * damping);
    return std::log(amplitude / 0.001) / decay;
}

double ShakeEffect::offset(double t) {
    return reach * (1 - (t - std::floor(t))) * std::sin(t * std::numbers::pi * 6);
}

std::optional<double> ShakeEffect::after(double seconds) {
    const double t = seconds / duration;
    if (t >= 1) return std::nullopt;
    return std::round(offset(t));
}

}  // namespace OrvelUI
