#pragma once

#include <cstdint>

/// Blur radii, as the user's sliders count them.
namespace OrvelCore::BlurIntensity {

struct Range {
    int lowest;
    int highest;
};
/// Both ends belong to it.
inline constexpr Range range{8, 64};
inline constexpr int soft = 12;
inline constexpr int strong = 48;
/// The softest radius at which text cannot be read.
inline constexpr int unreadable = 28;

/// Only where the outline of windows may stay readable is `allowsReadable` true; everywhere else
/// nothing softer than `unreadable` comes out.
int clamped(std::int64_t value, bool allowsReadable);

}  // namespace OrvelCore::BlurIntensity
