#pragma once

#include <cstdint>
#include <vector>

namespace OrvelSystem {

/// A decoded picture, rows from the top, each pixel 0xAARRGGBB with straight alpha.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    bool operator==(const Picture&) const = default;
};

}  // namespace OrvelSystem
