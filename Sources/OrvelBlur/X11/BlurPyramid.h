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

    /// Blurs `scene`, whose pixmap is not changed, into a canvas of the same size. The pyramid owns
    /// the result, which is valid until the next call. `radius` is in screen pixels.
    const Canvas& blur(const Canvas& scene, double radius);

  private:
    std::vector<Canvas> canvases_;  // the result, followed by one canvas for each level
};

}  // namespace OrvelBlur
