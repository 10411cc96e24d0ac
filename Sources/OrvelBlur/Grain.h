#pragma once

#include <cstdint>
#include <vector>

namespace OrvelBlur {

/// Faint noise that prevents banding in a blurred gradient. The seed is fixed, so the noise is the
/// same on every surface and in every run.
struct Grain {
    /// The side length of the tile, in grey levels.
    static constexpr int tileSize = 128;
    static constexpr std::uint32_t seed = 7;
    /// The opacity of the noise over the blur, 0 to 1.
    static constexpr double opacity = 0.035;

    /// `size` times `size` grey levels, row by row; empty if `size` is 0 or less.
    static std::vector<std::uint8_t> pixels(int size, std::uint32_t seed);
};

}  // namespace OrvelBlur
