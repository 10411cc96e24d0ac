#pragma once

#include <cstdint>
#include <vector>

namespace OrvelSystem {

/// A decoded image. Rows start at the top; each pixel is 0xAARRGGBB with straight (not
/// premultiplied) alpha.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    bool operator==(const Picture&) const = default;
};

}  // namespace OrvelSystem
