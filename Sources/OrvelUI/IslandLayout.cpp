#include "OrvelUI/IslandLayout.h"

#include <algorithm>

namespace OrvelUI {

namespace IslandLayout {

namespace {

constexpr double plainWidth = 344;
constexpr double plainBandHeight = 30;
constexpr double plainCollapsedWidth = 120;
// The width of both ears together, beside a notch.
constexpr double earsWidth = 168;
constexpr double contentHeight = 106;

}  // namespace

double width(const Notch& notch) {
    return notch ? std::max(notch->width + earsWidth, plainWidth) : plainWidth;
}

double earWidth(const Notch& notch) {
    return (width(notch) - (notch ? notch->width : 0)) * 0.5;
}

double bandHeight(const Notch& notch) {
    return notch ? notch->height : plainBandHeight;
}

double height(const Notch& notch) {
    return bandHeight(notch) + contentHeight;
}

double collapsedWidth(const Notch& notch) {
    return notch ? notch->width : plainCollapsedWidth;
}

OrvelCore::Size size(const Notch& notch, double progress) {
    const auto between = [progress](double closed, double open) {
        return closed + (open - closed) * progress;
    };
    return {.width = between(collapsedWidth(notch), width(notch)),
            .height = between(bandHeight(notch), height(notch))};
}

double bandOpacity(double progress) {
    return std::clamp((progress - 0.35) / 0.6, 0.0, 1.0);
}

double bodyOpacity(double progress) {
    return std::clamp((progress - 0.6) / 0.4, 0.0, 1.0);
}

double centerX(const Notch& notch, double displayWidth) {
    return notch ? notch->centerX : displayWidth * 0.5;
}

}  // namespace IslandLayout

Path IslandShape::path(const OrvelCore::Rect& rect) const {
    const double r = std::min({bottomRadius, rect.width / 2, rect.height / 2});
    const double f = std::min(flare, rect.height / 3);
    // The corner starts earlier than a circle's would, with the control points of the circle, so
    // that it bends slowly first and most in its middle. Small shapes have less space for this.
    const double corner = std::max(0.0, std::min({1.28 * r, rect.height - f, rect.width / 2 - f}));
    const double handle = std::min(corner, (1 - Path::circleHandle) * r);
    const double flareHandle = (1 - Path::circleHandle) * f;

    const double left = rect.x;
    const double right = rect.maxX();
    const double top = rect.y;
    const double bottom = rect.maxY();
    Path path;
    path.move(left, top).line(right, top);
    path.curve({right - f + flareHandle, top}, {right - f, top + flareHandle},
               {right - f, top + f});
    path.line(right - f, bottom - corner);
    path.curve({right - f, bottom - handle}, {right - f - handle, bottom},
               {right - f - corner, bottom});
    path.line(left + f + corner, bottom);
    path.curve({left + f + handle, bottom}, {left + f, bottom - handle},
               {left + f, bottom - corner});
    path.line(left + f, top + f);
    path.curve({left + f, top + flareHandle}, {left + f - flareHandle, top}, {left, top});
    return path.close();
}

}  // namespace OrvelUI
