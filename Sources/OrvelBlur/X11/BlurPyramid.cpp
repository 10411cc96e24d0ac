#include "OrvelBlur/X11/BlurPyramid.h"

#include <algorithm>
#include <cmath>

namespace OrvelBlur {

namespace {

// The standard deviation of the approximated Gaussian, as a fraction of the radius.
constexpr double deviationPerRadius = 0.6;

void scale(const Canvas& from, const Canvas& to) {
    RenderServer::shared().drawScaled(XCB_RENDER_PICT_OP_SRC, from.picture.id(), to.picture.id(),
                                      static_cast<double>(from.size.width) / to.size.width,
                                      static_cast<double>(from.size.height) / to.size.height, 0, 0,
                                      {0, 0, to.size.width, to.size.height});
}

}  // namespace

std::vector<PixelSize> BlurPyramid::levels(PixelSize scene, double radius) {
    // Averaging over f by f pixels and interpolating back has a variance of (f^2 - 1) / 3.
    const double deviation = radius * deviationPerRadius;
    double rest = std::sqrt(3 * deviation * deviation + 1) / sceneScale;
    std::vector<PixelSize> sizes;
    double factor = 1;
    while (rest > 1.05) {
        const double step = std::min(rest, 2.0);
        rest /= step;
        factor *= step;
        const auto shrink = [factor](int length) {
            return std::max(1, static_cast<int>(std::lround(length / factor)));
        };
        sizes.push_back({shrink(scene.width), shrink(scene.height)});
    }
    return sizes;
}

const Canvas& BlurPyramid::blur(const Canvas& scene, double radius) {
    auto sizes = levels(scene.size, radius);
    sizes.insert(sizes.begin(), scene.size);
    canvases_.resize(sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (canvases_[i].size != sizes[i])
            canvases_[i] = RenderServer::shared().makeCanvas(sizes[i], false);
    }
    const Canvas* from = &scene;
    for (std::size_t i = 1; i < canvases_.size(); ++i) {
        scale(*from, canvases_[i]);
        from = &canvases_[i];
    }
    for (std::size_t i = canvases_.size(); i-- > 0;) {
        if (from == &canvases_[i]) continue;
        scale(*from, canvases_[i]);
        from = &canvases_[i];
    }
    return canvases_.front();
}

}  // namespace OrvelBlur
