#include "OrvelAuth/BiometricResult.h"

namespace OrvelAuth {

BiometricResult biometricResult(int errorCode) {
    switch (errorCode) {
        case BiometricError::userCancel:
        case BiometricError::userFallback:
        case BiometricError::systemCancel:
        case BiometricError::appCancel:
            return BiometricCancelled{};
        case BiometricError::biometryLockout:
            return BiometricLockout{};
        case BiometricError::passcodeNotSet:
        case BiometricError::biometryNotAvailable:
        case BiometricError::biometryNotEnrolled:
            return BiometricUnavailable{};
        default:
            return BiometricFailed{errorCode};
    }
}

}  // namespace OrvelAuth
