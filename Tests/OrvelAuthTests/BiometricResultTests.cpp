#include "OrvelAuth/BiometricResult.h"
#include "OrvelAuth/FingerLockout.h"

namespace {

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
        EXPECT_EQ(lockout.judge(other), other) << "it neither counts nor resets the count";
    }
    EXPECT_FALSE(lockout.isLocked());
    EXPECT_EQ(lockout.judge(miss), BiometricResult(BiometricLockout{}));
    EXPECT_TRUE(lockout.isLocked());
    EXPECT_EQ(lockout.judge(BiometricSuccess{}), BiometricResult(BiometricLockout{}))
        << "only the password resets it";
    lockout.reset();
    EXPECT_FALSE(lockout.isLocked());
    misses(4);
}

}  // namespace
