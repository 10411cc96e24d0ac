#pragma once

#include <optional>

namespace OrvelUI {

/// The camera notch of a display. Points, from the display's own left edge; a display without a
/// notch has no metrics.
struct NotchMetrics {
    double width = 0;
    double height = 0;
    double centerX = 0;

    /// Nothing unless the safe area, both areas beside the notch and what lies between them are
    /// above 0.
    static std::optional<NotchMetrics> from(double screenWidth, double safeAreaTop,
                                            double auxLeftWidth, double auxRightWidth);

    bool operator==(const NotchMetrics&) const = default;
};

}  // namespace OrvelUI
