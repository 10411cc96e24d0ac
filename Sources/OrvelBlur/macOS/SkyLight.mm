#include "OrvelBlur/macOS/SkyLight.h"

#include <utility>

#import <Foundation/Foundation.h>
#include <dlfcn.h>

#include "OrvelBlur/BlurBackend.h"

namespace OrvelBlur {

namespace {

using MainConnection = std::int32_t (*)();
using SetRadius = std::int32_t (*)(std::int32_t connection, std::uint32_t window,
                                   std::int32_t radius);

template <class F>
F bound(const char* name) {
    return reinterpret_cast<F>(dlsym(RTLD_DEFAULT, name));
}

MainConnection mainConnection() {
    static const auto found = bound<MainConnection>("CGSMainConnectionID");
    return found;
}

SetRadius setter() {
    static const auto found = bound<SetRadius>("CGSSetWindowBackgroundBlurRadius");
    return found;
}

}  // namespace

bool SkyLight::isAvailable() {
    return mainConnection() && setter();
}

bool SkyLight::setRadius(int radius, OrvelCore::WindowID windowNumber) {
    if (!isAvailable() || !std::in_range<std::uint32_t>(windowNumber)) return false;
    return setter()(mainConnection()(), static_cast<std::uint32_t>(windowNumber), radius) == 0;
}

BlurSupport BlurSupport::current() {
    const auto version = NSProcessInfo.processInfo.operatingSystemVersion;
    return {.skyLightAvailable = SkyLight::isAvailable(),
            .osMajor = static_cast<int>(version.majorVersion),
            .verifiedMajors = {15}};
}

}  // namespace OrvelBlur
