#include "OrvelUI/NotchMetrics.h"

namespace OrvelUI {

std::optional<NotchMetrics> NotchMetrics::from(double screenWidth, double safeAreaTop,
                                               double auxLeftWidth, double auxRightWidth) {
    const double width = screenWidth - auxLeftWidth - auxRightWidth;
    if (!(safeAreaTop > 0 && auxLeftWidth > 0 && auxRightWidth > 0 && width > 0)) return {};
    return NotchMetrics{
        .width = width, .height = safeAreaTop, .centerX = auxLeftWidth + width * 0.5};
}

}  // namespace OrvelUI
