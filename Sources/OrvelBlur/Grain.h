#pragma once

#include <cstdint>
#include <vector>

namespace OrvelBlur {

/// The faint noise that keeps a blurred gradient from banding. Fixed seed, so that it is the same
/// on every surface and every run.
struct Grain {
    static constexpr int tileSize = 128;
    static constexpr std::uint32_t seed = 7;
    static constexpr double opacity = 0.035;

    /// `size` times `size` grey levels; empty for a size of 0 or less.
    static std::vector<std::uint8_t> pixels(int size, std::uint32_t seed);
};

}  // namespace OrvelBlur
