#include <gtest/gtest.h>

#include "OrvelAuth/BiometricResult.h"
#include "OrvelAuth/FingerLockout.h"

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

TEST(FingerLockout, CountsFingersThatDidNotMatchInARow) {
    const BiometricResult miss = BiometricFailed{BiometricError::authenticationFailed};
    FingerLockout lockout;
    const auto misses = [&](int count) {
        for (int i = 0; i < count; ++i) EXPECT_EQ(lockout.judge(miss), miss);
    };
    misses(4);
    EXPECT_EQ(lockout.judge(BiometricSuccess{}), BiometricResult(BiometricSuccess{}));
    misses(4);
    for (const BiometricResult& other :
         {BiometricResult(BiometricCancelled{}), BiometricResult(BiometricUnavailable{}),
          BiometricResult(BiometricFailed{BiometricError::none})}) {
        EXPECT_EQ(lockout.judge(other), other) << "neither counts nor forgives";
    }
    EXPECT_FALSE(lockout.isLocked());
    EXPECT_EQ(lockout.judge(miss), BiometricResult(BiometricLockout{}));
    EXPECT_TRUE(lockout.isLocked());
    EXPECT_EQ(lockout.judge(BiometricSuccess{}), BiometricResult(BiometricLockout{}))
        << "only the password leads out";
    lockout.reset();
    EXPECT_FALSE(lockout.isLocked());
    misses(4);
}

}  // namespace
