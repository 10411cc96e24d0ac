#pragma once

#include <set>

namespace OrvelBlur {

/// Who blurs what lies behind a surface. In either case the program never sees those pixels.
enum class BlurBackend {
    skyLight,      ///< The window server, with a radius under the program's control.
    visualEffect,  ///< The desktop's public effect, of fixed strength; only its opacity follows.
};

/// What a platform can say about its window server.
struct BlurSupport {
    bool skyLightAvailable = false;
    int osMajor = 0;
    /// The majors on which the radius-controlled blur was verified; any other gets the public one.
    std::set<int> verifiedMajors;

    static BlurSupport current();
};

/// Chosen once at launch and passed to every surface.
inline BlurBackend choose(bool skyLightAvailable, int osMajor,
                          const std::set<int>& verifiedMajors) {
    return skyLightAvailable && verifiedMajors.contains(osMajor) ? BlurBackend::skyLight
                                                                 : BlurBackend::visualEffect;
}

}  // namespace OrvelBlur
