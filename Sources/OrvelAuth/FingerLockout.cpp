#include "OrvelAuth/FingerLockout.h"

#include <variant>

namespace OrvelAuth {

BiometricResult FingerLockout::judge(const BiometricResult& result) {
    if (isLocked()) return BiometricLockout{};
    if (std::holds_alternative<BiometricSuccess>(result)) misses_ = 0;
    if (result == BiometricResult(BiometricFailed{BiometricError::authenticationFailed})) ++misses_;
    return isLocked() ? BiometricLockout{} : result;
}

}  // namespace OrvelAuth
