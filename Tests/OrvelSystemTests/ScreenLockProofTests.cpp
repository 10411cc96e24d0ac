#include "OrvelSystem/ScreenLockProof.h"

using OrvelSystem::ScreenLockProof;

TEST(ScreenLockProof, AnUnlockCountsOnlyAfterALockThatTheWindowServerHasConfirmed) {
    ScreenLockProof proof;
    EXPECT_FALSE(proof.unlocked(false)) << "nothing was locked";
    proof.looked(false);
    EXPECT_FALSE(proof.unlocked(false)) << "the lock was forged";
    proof.looked(false);
    proof.looked(true);
    EXPECT_FALSE(proof.unlocked(true)) << "the unlock was forged";
    EXPECT_TRUE(proof.unlocked(false));
    EXPECT_FALSE(proof.unlocked(false)) << "the same unlock again";
}

TEST(ScreenLockProof, ALookAfterTheLockDoesNotTakeItBack) {
    ScreenLockProof proof;
    proof.looked(true);
    proof.looked(false);
    EXPECT_TRUE(proof.unlocked(false));
}
