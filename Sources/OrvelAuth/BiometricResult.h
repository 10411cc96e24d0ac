#pragma once

#include <variant>

namespace OrvelAuth {

/// The sensor accepted.
struct BiometricSuccess {
    bool operator==(const BiometricSuccess&) const = default;
};
/// The prompt ended without a verdict; worth trying again later.
struct BiometricCancelled {
    bool operator==(const BiometricCancelled&) const = default;
};
/// The sensor locked itself.
struct BiometricLockout {
    bool operator==(const BiometricLockout&) const = default;
};
/// There is no sensor that could be used.
struct BiometricUnavailable {
    bool operator==(const BiometricUnavailable&) const = default;
};
/// Anything else, a finger that is not the user's first of all.
struct BiometricFailed {
    int code = 0;
    bool operator==(const BiometricFailed&) const = default;
};
using BiometricResult = std::variant<BiometricSuccess, BiometricCancelled, BiometricLockout,
                                     BiometricUnavailable, BiometricFailed>;

/// Codes of `LAError`, in which every platform's bindings report.
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

/// The outcome of a prompt that ended with the error `errorCode`.
BiometricResult biometricResult(int errorCode);

}  // namespace OrvelAuth
