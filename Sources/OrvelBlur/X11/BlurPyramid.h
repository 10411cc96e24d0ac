#pragma once

#include <vector>

#include "OrvelBlur/X11/RenderServer.h"

namespace OrvelBlur {

/// A blur on the server: a picture is scaled down by halves, the last step by what is left, and up
/// again. Each step costs a quarter of the one before, so a strong blur costs hardly more than a
/// weak one.
class BlurPyramid {
  public:
    /// The scene comes at this fraction of the screen's resolution. No radius in use is fine
    /// enough to tell, and it quarters the cost.
    static constexpr int sceneScale = 2;

    /// Sizes of the levels below a scene of `scene` pixels that give a blur of `radius` screen
    /// pixels; empty when nothing is to be blurred.
    static std::vector<PixelSize> levels(PixelSize scene, double radius);

    /// Blurs `scene` (its pixmap is left as it is) into a canvas of the same size, which belongs to
    /// the pyramid and is valid until the next call.
    const Canvas& blur(const Canvas& scene, double radius);

  private:
    std::vector<Canvas> canvases_;  // the result, then one for each level
};

}  // namespace OrvelBlur
