#include <gtest/gtest.h>

#include "OrvelAuth/BiometricResult.h"

namespace {

using namespace OrvelAuth;

TEST(BiometricResult, ComesFromTheErrorCode) {
    const std::pair<int, BiometricResult> table[] = {
        {-2, BiometricCancelled{}},   {-3, BiometricCancelled{}},   {-4, BiometricCancelled{}},
        {-9, BiometricCancelled{}},   {-8, BiometricLockout{}},     {-5, BiometricUnavailable{}},
        {-6, BiometricUnavailable{}}, {-7, BiometricUnavailable{}}, {-1, BiometricFailed{-1}},
        {0, BiometricFailed{0}},      {-10, BiometricFailed{-10}},  {7, BiometricFailed{7}},
    };
    for (const auto& [code, result] : table) EXPECT_EQ(biometricResult(code), result) << code;
}

}  // namespace
