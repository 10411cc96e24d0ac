#pragma once

#include <optional>

namespace OrvelUI {

/// The camera notch of a display, in points from the display's left edge. A display without a notch
/// has no metrics.
struct NotchMetrics {
    double width = 0;
    double height = 0;
    double centerX = 0;

    /// `nullopt` unless the safe area, both areas beside the notch and the width between them are
    /// positive. All parameters are in points.
    static std::optional<NotchMetrics> from(double screenWidth, double safeAreaTop,
                                            double auxLeftWidth, double auxRightWidth);

    bool operator==(const NotchMetrics&) const = default;
};

}  // namespace OrvelUI
