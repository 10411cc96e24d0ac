#pragma once

#include <array>
#include <string_view>

#include "OrvelCore/RawValue.h"

namespace OrvelCore {

enum class LockSound { lock, unlock, failure };
constexpr std::array<std::string_view, 3> rawNames(LockSound) {
    return {"lock", "unlock", "failure"};
}

enum class Haptic { failure, success };

}  // namespace OrvelCore
