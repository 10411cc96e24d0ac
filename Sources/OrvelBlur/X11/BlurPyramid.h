#pragma once

#include <vector>

#include "OrvelBlur/X11/RenderServer.h"

namespace OrvelBlur {

/// A blur on the server: a picture is scaled down by halves, with a smaller last step, and up
/// again. Each step costs a quarter of the one before, so a strong blur costs hardly more than a
/// weak one.
class BlurPyramid {
  public:
    /// The scene has this fraction of the screen's resolution. No radius in use is small enough for
    /// the difference to show, and it quarters the cost.
    static constexpr int sceneScale = 2;

    /// The sizes of the levels below a scene of `scene` pixels that give a blur of `radius` screen
    /// pixels; empty when nothing is to be blurred.
    static std::vector<PixelSize> levels(PixelSize scene, double radius);

    /// Blurs `scene`, whose pixmap is not changed, into a canvas of the same size, and tints it.
    /// The pyramid owns the result, which is valid until the next call. `radius` is in screen
    /// pixels. `changed` says where the scene differs from that of the last call, in pixels of the
    /// scene; it must be the whole scene if the size, the radius or the tint is another one.
    const Canvas& blur(const Canvas& scene, double radius, const OrvelCore::Color& tint,
                       const std::vector<PixelRect>& changed);
    /// The parts of the result that `blur` draws for this change. Elsewhere the blur would differ
    /// by less than one step of a colour.
    static std::vector<PixelRect> reach(PixelSize scene, double radius,
                                        const std::vector<PixelRect>& changed);

    /// Gives all canvases to the server's store. The result is no longer valid.
    void keepCanvases();

  private:
    // The scene scaled down step by step, and up again to the result, which is the first.
    std::vector<Canvas> down_;
    std::vector<Canvas> up_;
};

}  // namespace OrvelBlur
