#pragma once

#include <optional>

namespace OrvelUI {

/// The spring with which the island opens, as a pure function of time.
struct Spring {
    /// Seconds of one undamped oscillation.
    double response = 0.42;
    /// The fraction of critical damping, between 0 and 1 exclusive.
    double damping = 0.8;

    /// The progress from 0 to 1 after `seconds`; overshoots 1 slightly.
    double value(double seconds) const;
    /// Seconds after which the value stays within 0.001 of 1.
    double settlingTime() const;
};

/// The shake of a card after a wrong password: three full oscillations that decay.
struct ShakeEffect {
    /// The maximum offset to either side, in points.
    static constexpr double reach = 10;
    /// Seconds of one shake.
    static constexpr double duration = 0.5;

    /// The horizontal offset in points; `t` increases by 1 during one shake.
    static double offset(double t);
    /// The offset in whole points, `seconds` after the start; `nullopt` when the shake is over.
    static std::optional<double> after(double seconds);
};

}  // namespace OrvelUI
