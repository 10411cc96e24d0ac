#include <random>

#include <gtest/gtest.h>

#include "LockSessionFixture.h"

using namespace OrvelAuth;
using namespace OrvelCore;

namespace {

/// Anything in any order, against what must hold whenever nothing runs.
TEST_F(LockSessionTest, HoldsItsPromisesWhateverHappens) {
    std::mt19937 random(20260301);
    const auto pick = [&](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    bool uncoveredWhileLocked = false;
    presenter.onUncover = [&] { uncoveredWhileLocked |= session->isLocked(); };
    kiosk.engaging.answer.reset();
    int locks = 0;
    bool wasLocked = false;

    for (int step = 0; step < 60'000; ++step) {
        const int action = pick(24);
        switch (action) {
            case 0:
                lock();
                break;
            case 1:
                if (pick(4) == 0) run(session->biometricAccepted());
                break;
            case 2:
                run(session->macOSLocked());
                break;
            case 3:
                run(session->macOSUnlocked());
                break;
            case 4:
                submit("x");
                break;
            case 5:
                run(session->focusLost());
                break;
            case 6:
                run(session->reclaimFailed());
                break;
            case 7:
                run(session->resumeIfMarked());
                break;
            case 8:
                session->screensChanged();
                break;
            case 9:
                guard = pick(4) != 0;
                break;
            case 10:
                sensor = pick(2) != 0;
                break;
            case 11:
                kiosk.desktopIsFree = pick(3) != 0;
                break;
            case 12:
                accountFailures = pick(2) ? std::optional(pick(12)) : std::nullopt;
                break;
            case 13:
                session->setUnlocksWithMacOS(pick(2) != 0);
                break;
            case 14:
                session->setHandOffAfter(pick(2) ? std::optional(pick(60) * 1.0) : std::nullopt);
                break;
            case 15:
                if (!session->isLocked()) markers.writable = pick(4) != 0;
                break;
            case 16:
                screenIsLocked = pick(2) != 0;
                break;
            case 17:
            case 18:
                if (kiosk.engaging.waiting()) kiosk.engaging.arrive(pick(3) != 0);
                break;
            case 19:
            case 20:
                if (verifier.verifying.waiting()) {
                    const PasswordResult results[] = {PasswordAccepted{}, PasswordRejected{},
                                                      PasswordRejected{}, PasswordUnavailable{}};
                    verifier.verifying.arrive(results[pick(4)]);
                }
                break;
            default:
                loop.advance(0.5 * pick(8));
                run(session->tick());
        }
        loop.drain();

        SCOPED_TRACE(step);
        const bool locked = session->isLocked();
        ASSERT_FALSE(uncoveredWhileLocked);
        ASSERT_EQ(presenter.covering, locked);
        ASSERT_EQ(markers.marker.has_value(), locked && markers.writable);
        // The system's own lock finds the desktop free, and so does the user afterwards.
        const bool mustNotHold =
            session->machine().isHandedOff() || (!locked && !kiosk.engaging.waiting());
        ASSERT_FALSE(kiosk.holds && mustNotHold);
        if (locked && !wasLocked) ++locks;
        wasLocked = locked;
    }
    EXPECT_GT(locks, 500);
}

}  // namespace
