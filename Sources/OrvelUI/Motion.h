#pragma once

namespace OrvelUI {

/// The spring with which the island opens: a pure function of time.
struct Spring {
    /// Seconds of one undamped swing.
    double response = 0.42;
    /// Share of critical damping, above 0 and below 1.
    double damping = 0.8;

    /// How far from 0 towards 1 after `seconds`; swings a little beyond 1 on the way.
    double value(double seconds) const;
    /// Seconds after which it stays within a thousandth of 1.
    double settlingTime() const;
};

/// The shake of a card after a wrong password: three full swings that die away.
struct ShakeEffect {
    /// Points; the card never moves further to either side.
    static constexpr double reach = 10;
    /// Seconds that one shake takes.
    static constexpr double duration = 0.5;

    /// Horizontal offset in points; `t` grows by 1 over one shake.
    static double offset(double t);
};

}  // namespace OrvelUI
