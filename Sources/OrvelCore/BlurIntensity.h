#pragma once

#include <cstdint>

/// Blur radii in points, as the user's sliders show them.
namespace OrvelCore::BlurIntensity {

struct Range {
    int lowest;
    int highest;
};
/// Both ends are included.
inline constexpr Range range{8, 64};
inline constexpr int soft = 12;
inline constexpr int strong = 48;
/// The smallest radius at which text is unreadable.
inline constexpr int unreadable = 28;

/// Limits `value` to `range`. If `allowsReadable` is false, the result is at least `unreadable`; it
/// may be true only where users may recognise the shapes of windows.
int clamped(std::int64_t value, bool allowsReadable);

}  // namespace OrvelCore::BlurIntensity
