#include "OrvelCore/BlurIntensity.h"

#include <algorithm>

namespace OrvelCore {

int BlurIntensity::clamped(std::int64_t value, bool allowsReadable) {
    const int floor = allowsReadable ? range.lowest : unreadable;
    return static_cast<int>(std::clamp<std::int64_t>(value, floor, range.highest));
}

}  // namespace OrvelCore
