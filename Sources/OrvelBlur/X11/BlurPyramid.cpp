#include "OrvelBlur/X11/BlurPyramid.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace OrvelBlur {

namespace {

// The standard deviation of the approximated Gaussian, as a fraction of the radius.
constexpr double deviationPerRadius = 0.6;

// Beyond this many standard deviations from an edge, a Gaussian changes a channel of a colour by
// less than half a step of 255.
constexpr double visibleDeviations = 3;

void scale(const Canvas& from, const Canvas& to) {
    RenderServer::shared().drawScaled(XCB_RENDER_PICT_OP_SRC, from.picture.id(), to.picture.id(),
                                      static_cast<double>(from.size.width) / to.size.width,
                                      static_cast<double>(from.size.height) / to.size.height, 0, 0,
                                      {0, 0, to.size.width, to.size.height});
}

/// The pixels of a canvas of size `to` that depend on `areas` of one of size `from`, of which it is
/// a scaled picture: each pixel is interpolated from the nearest ones.
std::vector<PixelRect> dependents(const std::vector<PixelRect>& areas, PixelSize from,
                                  PixelSize to) {
    const PixelRect all{0, 0, to.width, to.height};
    const double across = static_cast<double>(to.width) / from.width;
    const double down = static_cast<double>(to.height) / from.height;
    std::vector<PixelRect> mapped;
    for (const auto& area : areas) {
        const int left = static_cast<int>(std::floor((area.x - 1) * across)) - 1;
        const int top = static_cast<int>(std::floor((area.y - 1) * down)) - 1;
        const int right = static_cast<int>(std::ceil((area.x + area.width + 1) * across)) + 1;
        const int bottom = static_cast<int>(std::ceil((area.y + area.height + 1) * down)) + 1;
        const auto part = PixelRect{left, top, right - left, bottom - top}.intersected(all);
        if (!part.isEmpty()) mapped.push_back(part);
    }
    return mapped;
}

void resize(std::vector<Canvas>& canvases, const std::vector<PixelSize>& sizes) {
    canvases.resize(sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (canvases[i].size != sizes[i])
            canvases[i] = RenderServer::shared().makeCanvas(sizes[i], false);
    }
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

void BlurPyramid::keepCanvases() {
    for (auto* const canvases : {&down_, &up_}) {
        for (auto& canvas : std::exchange(*canvases, {}))
            RenderServer::shared().keep(std::move(canvas));
    }
}

std::vector<PixelRect> BlurPyramid::reach(PixelSize scene, double radius,
                                          const std::vector<PixelRect>& changed) {
    const PixelRect all{0, 0, scene.width, scene.height};
    const double deviation = radius * deviationPerRadius / sceneScale;
    const int margin = static_cast<int>(std::ceil(visibleDeviations * deviation)) + 2;
    std::vector<PixelRect> parts;
    for (const auto& area : changed) {
        const auto part = area.grown(margin).intersected(all);
        if (!part.isEmpty()) parts.push_back(part);
    }
    return parts;
}

const Canvas& BlurPyramid::blur(const Canvas& scene, double radius, const OrvelCore::Color& tint,
                                const std::vector<PixelRect>& changed) {
    const auto& server = RenderServer::shared();
    const auto sizes = levels(scene.size, radius);
    resize(down_, sizes);
    auto upSizes = sizes;
    upSizes.insert(upSizes.begin(), scene.size);
    if (upSizes.size() > 1) upSizes.pop_back();
    resize(up_, upSizes);

    auto parts = changed;
    const Canvas* from = &scene;
    for (const auto& level : down_) {
        parts = dependents(parts, from->size, level.size);
        server.drawWithin(parts, level, [&] { scale(*from, level); });
        from = &level;
    }
    for (std::size_t i = up_.size() - 1; i > 0; --i) {
        parts = dependents(parts, from->size, up_[i].size);
        server.drawWithin(parts, up_[i], [&] { scale(*from, up_[i]); });
        from = &up_[i];
    }
    const Canvas& result = up_.front();
    server.drawWithin(reach(scene.size, radius, changed), result, [&] {
        scale(*from, result);
        // A flat colour looks the same when scaled up, so it is applied where there are fewer
        // pixels.
        server.fill(XCB_RENDER_PICT_OP_OVER, result.picture.id(), tint,
                    {0, 0, result.size.width, result.size.height});
    });
    return result;
}

}  // namespace OrvelBlur
