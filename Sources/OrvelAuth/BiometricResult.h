#pragma once

#include <variant>

namespace OrvelAuth {

/// The sensor accepted the finger.
struct BiometricSuccess {
    bool operator==(const BiometricSuccess&) const = default;
};
/// The prompt ended without a result; a later prompt may succeed.
struct BiometricCancelled {
    bool operator==(const BiometricCancelled&) const = default;
};
/// The sensor has locked itself.
struct BiometricLockout {
    bool operator==(const BiometricLockout&) const = default;
};
/// No sensor can be used.
struct BiometricUnavailable {
    bool operator==(const BiometricUnavailable&) const = default;
};
/// Any other error, most commonly a finger that does not match.
struct BiometricFailed {
    int code = 0;
    bool operator==(const BiometricFailed&) const = default;
};
using BiometricResult = std::variant<BiometricSuccess, BiometricCancelled, BiometricLockout,
                                     BiometricUnavailable, BiometricFailed>;

/// Codes of `LAError`, which the implementations of all platforms use.
namespace BiometricError {

inline constexpr int none = 0;
inline constexpr int authenticationFailed = -1;
inline constexpr int userCancel = -2;
inline constexpr int userFallback = -3;
inline constexpr int systemCancel = -4;
inline constexpr int passcodeNotSet = -5;
inline constexpr int biometryNotAvailable = -6;
inline constexpr int biometryNotEnrolled = -7;
inline constexpr int biometryLockout = -8;
inline constexpr int appCancel = -9;

}  // namespace BiometricError

/// The result of a prompt that ended with the error `errorCode`.
BiometricResult biometricResult(int errorCode);

}  // namespace OrvelAuth
