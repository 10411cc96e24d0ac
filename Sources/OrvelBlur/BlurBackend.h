#pragma once

#include <set>

namespace OrvelBlur {

/// What blurs the area behind a surface. In either case the program never receives those pixels.
enum class BlurBackend {
    skyLight,      ///< The window server, with a radius that the program sets.
    visualEffect,  ///< The desktop's public effect of fixed strength; only its opacity can be set.
};

/// What a platform reports about its window server.
struct BlurSupport {
    bool skyLightAvailable = false;
    int osMajor = 0;
    /// The major versions on which the blur with a radius was verified; others get the public
    /// effect.
    std::set<int> verifiedMajors;

    static BlurSupport current();
};

/// Called once at launch; the result is passed to every surface.
inline BlurBackend choose(bool skyLightAvailable, int osMajor,
                          const std::set<int>& verifiedMajors) {
    return skyLightAvailable && verifiedMajors.contains(osMajor) ? BlurBackend::skyLight
                                                                 : BlurBackend::visualEffect;
}

}  // namespace OrvelBlur
