#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "OrvelCore/RawValue.h"

namespace OrvelCore {

enum class LockSound { lock, unlock, failure };
constexpr std::array<std::string_view, 3> rawNames(LockSound) {
    return {"lock", "unlock", "failure"};
}
/// In seconds.
constexpr double duration(LockSound sound) {
    constexpr std::array<double, 3> durations = {0.18, 0.12, 0.16};
    return durations[static_cast<std::size_t>(sound)];
}

enum class Haptic { failure, success };

}  // namespace OrvelCore
