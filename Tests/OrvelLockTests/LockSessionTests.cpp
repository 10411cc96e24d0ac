#include "LockSessionFixture.h"

namespace {

TEST_F(LockSessionTest, RecordsTheLockBeforeItShowsAndTakesTheDesktopLast) {
    lock();
    EXPECT_THAT(take(), ElementsAre("write", "cover", "engage"));
    EXPECT_EQ(markers.marker, (LockMarker{wall, "boot", 0}));
    EXPECT_EQ(session->machine().phase, LockPhase(LockPhases::Locked{0}));

    lock();
    EXPECT_THAT(take(), ElementsAre());

    run(session->biometricAccepted());
    EXPECT_THAT(take(), ElementsAre("uncover", "clear", "release restoring", "uncovered"));
    EXPECT_FALSE(session->isLocked());
}

TEST_F(LockSessionTest, ALockThatCannotProtectIsHandedOff) {
    struct Case {
        const char* name;
        std::function<void(LockSessionTest&)> danger;
        CallLog calls;
    };
    const Case cases[] = {
        {"no marker",
         [](auto& test) { test.markers.writable = false; },
         {"write", "cover", "yield", "engageMacOSLock"}},
        {"no guard",
         [](auto& test) { test.guard = false; },
         {"write", "cover", "yield", "engageMacOSLock"}},
        {"desktop not taken",
         [](auto& test) { test.kiosk.engaging.answer = false; },
         {"write", "cover", "engage", "yield", "engageMacOSLock"}},
        // The final yield is needed because the grab succeeded only after the hand-off.
        {"account near its limit, no sensor",
         [](auto& test) {
             test.accountFailures = 8;
             test.sensor = false;
         },
         {"write", "cover", "passwordsPaused", "yield", "engageMacOSLock", "engage", "yield"}},
        {"account near its limit, no sensor, desktop not taken",
         [](auto& test) {
             test.accountFailures = 8;
             test.sensor = false;
             test.kiosk.engaging.answer = false;
         },
         {"write", "cover", "passwordsPaused", "yield", "engageMacOSLock", "engage", "yield"}},
    };
    for (const auto& [name, danger, calls] : cases) {
        SCOPED_TRACE(name);
        guard = sensor = markers.writable = true;
        kiosk.engaging.answer = true;
        accountFailures.reset();
        danger(*this);
        lock();
        EXPECT_EQ(take(), calls);
        EXPECT_TRUE(session->machine().isHandedOff());
        EXPECT_FALSE(kiosk.holds);
        EXPECT_EQ(markers.marker.has_value(), markers.writable);
        run(session->biometricAccepted());
        EXPECT_THAT(take(), ElementsAre("uncover", "clear", "release restoring", "uncovered"));
    }
}

TEST_F(LockSessionTest, AnAccountNearItsLimitPausesPasswordsAndStillLocks) {
    accountFailures = 8;
    lock();
    EXPECT_THAT(take(), ElementsAre("write", "cover", "passwordsPaused", "engage"));
    EXPECT_TRUE(kiosk.holds);
    EXPECT_EQ(session->machine().phase, LockPhase(LockPhases::PasswordsPaused{0}));
}

TEST_F(LockSessionTest, AnswersOfTheVerifier) {
    struct Case {
        PasswordResult result;
        CallLog calls;
        LockPhase phase;
    };
    const Case cases[] = {
        {PasswordUnavailable{"directory down"}, {"unavailable"}, LockPhases::Locked{0}},
        {PasswordRejected{}, {"failedAttempt", "wrongPassword"}, LockPhases::Locked{1}},
        {PasswordUnavailable{"directory down"}, {"unavailable"}, LockPhases::Locked{1}},
        {PasswordRejected{},
         {"failedAttempt", "wrongPassword", "cooldown 1060"},
         LockPhases::CoolingDown{2, 1060}},
    };
    lock();
    take();
    for (const auto& [result, calls, phase] : cases) {
        submit("secret");
        EXPECT_THAT(take(), ElementsAre("verifying", "verify secret"));
        verifier.verifying.arrive(result);
        EXPECT_EQ(take(), calls);
        EXPECT_EQ(session->machine().phase, phase);
    }
    submit("too soon");
    loop.advance(59.5);
    run(session->tick());
    submit("too soon");
    EXPECT_THAT(take(), ElementsAre("reassert"));
    loop.advance(0.5);
    run(session->tick());
    EXPECT_THAT(take(), ElementsAre("ready", "reassert"));

    submit("right");
    verifier.verifying.arrive(PasswordAccepted{});
    EXPECT_THAT(take(), ElementsAre("verifying", "verify right", "uncover", "clear",
                                    "release restoring", "uncovered"));
    EXPECT_EQ(attempts, (std::vector{wall, wall}));
}

TEST_F(LockSessionTest, TheAccountsOwnCounterIsAskedBeforeEachPassword) {
    struct Case {
        std::optional<int> limit;
        std::optional<int> failures;
        bool tried;
    };
    for (const auto& [limit, failures, tried] : {
             Case{10, 7, true},
             Case{10, 8, false},
             Case{10, 12, false},
             Case{10, {}, true},
             Case{{}, 1000, true},
         }) {
        make(limit);
        lock();
        accountFailures = failures;
        take();
        submit("x");
        if (tried)
            EXPECT_THAT(take(), ElementsAre("verifying", "verify x"));
        else
            EXPECT_THAT(take(), ElementsAre("passwordsPaused"));
        accountFailures.reset();
    }
}

TEST_F(LockSessionTest, ThePauseOfThisLocksOwnFailuresHandsOffWithoutASensor) {
    make(4);
    lock();
    for (int failure = 1; failure <= 2; ++failure) {
        sensor = false;
        take();
        submit("x");
        verifier.verifying.arrive(PasswordRejected{});
    }
    EXPECT_THAT(take(), ElementsAre("verifying", "verify x", "failedAttempt", "wrongPassword",
                                    "passwordsPaused", "yield", "engageMacOSLock"));
    // The system never confirms, so the card returns; the account is still near its limit.
    loop.advance(2);
    run(session->tick());
    accountFailures = 2;
    take();
    submit("x");
    EXPECT_THAT(take(), ElementsAre("passwordsPaused", "yield", "engageMacOSLock"));
}

TEST_F(LockSessionTest, LateAnswersAreRecordedAtMost) {
    const PasswordResult late[] = {PasswordAccepted{}, PasswordRejected{},
                                   PasswordUnavailable{"late"}};
    for (const auto& result : late) {
        SCOPED_TRACE(result.index());
        const CallLog recorded =
            std::holds_alternative<PasswordRejected>(result) ? CallLog{"failedAttempt"} : CallLog{};
        lock();
        submit("x");
        run(session->biometricAccepted());
        take();
        verifier.verifying.arrive(result);
        EXPECT_EQ(take(), recorded);
        EXPECT_FALSE(session->isLocked());

        lock();
        submit("x");
        run(session->reclaimFailed());
        take();
        verifier.verifying.arrive(result);
        EXPECT_EQ(take(), recorded);
        EXPECT_TRUE(session->machine().isHandedOff());
        EXPECT_EQ(session->machine().failures(), 0);
        run(session->biometricAccepted());
    }
}

TEST_F(LockSessionTest, ThreeFocusLossesWithinTenSecondsHandOff) {
    struct Case {
        std::vector<double> at;
        bool handsOff;
    };
    for (const auto& [at, handsOff] : {
             Case{{0, 1}, false},
             Case{{0, 1, 2}, true},
             Case{{0, 5, 9.75}, true},
             Case{{0, 5, 10}, false},
             Case{{0, 5, 10, 14.75}, true},
         }) {
        lock();
        const double start = loop.uptime();
        for (const double time : at) {
            EXPECT_FALSE(session->machine().isHandedOff());
            loop.advance(start + time - loop.uptime());
            run(session->focusLost());
        }
        EXPECT_EQ(session->machine().isHandedOff(), handsOff) << testing::PrintToString(at);
        run(session->biometricAccepted());
        // A loss between locks does not count.
        run(session->focusLost());
    }
}

TEST_F(LockSessionTest, FocusLossesOutliveAHandOffButNotTheLock) {
    lock();
    for (int loss = 0; loss < 4; ++loss) run(session->focusLost());
    loop.advance(2);
    run(session->tick());
    EXPECT_EQ(session->machine().phase, LockPhase(LockPhases::Locked{0}));
    take();
    run(session->focusLost());
    EXPECT_THAT(take(), ElementsAre("yield", "engageMacOSLock"));

    run(session->biometricAccepted());
    lock();
    run(session->focusLost());
    EXPECT_FALSE(session->machine().isHandedOff());
}

TEST_F(LockSessionTest, ComesBackAfterACrashInThisBootOnly) {
    struct Case {
        const char* name;
        std::optional<std::string> markedBoot;
        bool resumes;
    };
    for (const auto& [name, markedBoot, resumes] :
         {Case{"no marker", {}, false}, Case{"another boot", "earlier boot", false},
          Case{"this boot", "boot", true}}) {
        SCOPED_TRACE(name);
        make(10);
        markers.marker.reset();
        if (markedBoot) markers.marker = LockMarker{wall - Seconds(60), *markedBoot, 3};
        take();
        EXPECT_EQ(session->willResume(), resumes);
        run(session->resumeIfMarked());
        EXPECT_EQ(session->isLocked(), resumes);
        EXPECT_EQ(take(), resumes ? (CallLog{"write", "cover", "engage"}) : CallLog{});
        EXPECT_FALSE(session->willResume());
    }
    EXPECT_EQ(markers.marker, (LockMarker{wall, "boot", 0}));
    EXPECT_EQ(session->machine().failures(), 0);

    screenIsLocked = true;
    run(session->resumeIfMarked());
    EXPECT_THAT(take(), ElementsAre());
    EXPECT_FALSE(session->machine().macOSLockedDuringLock);
}

TEST_F(LockSessionTest, SettingsReachARunningLock) {
    lock();
    loop.advance(100);
    run(session->tick());
    EXPECT_FALSE(session->machine().isHandedOff());
    session->setHandOffAfter(100);
    take();
    run(session->tick());
    EXPECT_THAT(take(), ElementsAre("yield", "engageMacOSLock"));

    session->setUnlocksWithMacOS(false);
    run(session->macOSLocked());
    run(session->macOSUnlocked());
    EXPECT_THAT(take(), ElementsAre("ready", "reassert"));
    session->setUnlocksWithMacOS(true);
    run(session->macOSUnlocked());
    EXPECT_FALSE(session->isLocked());
}

}  // namespace
