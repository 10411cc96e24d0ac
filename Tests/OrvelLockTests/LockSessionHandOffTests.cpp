// Locks that were handed off to the system's lock, or that have lost the desktop.

#include "LockSessionFixture.h"

namespace {

TEST_F(LockSessionTest, ASystemLockThatEndsWithoutAProofBringsTheCardBack) {
    struct Case {
        std::string what;
        bool comesUp;
        double goesFor;
        bool isOver;
    };
    const std::vector<Case> cases{{"it never comes up", false, 4.5, false},
                                  {"it never comes up", false, 5, true},
                                  {"it is only drawn anew", true, 0.2, false},
                                  {"it goes without a word", true, 0.5, true}};
    for (const auto& c : cases) {
        lock();
        run(session->reclaimFailed());
        run(session->macOSLocked());
        kiosk.systemLockHolds = c.comesUp;
        run(session->tick());
        take();
        kiosk.systemLockHolds = false;
        run(session->desktopDisturbed());
        loop.advance(c.goesFor);
        run(session->tick());
        EXPECT_EQ(take().empty(), !c.isOver) << c.what;
        EXPECT_TRUE(session->isLocked());
        run(session->macOSLockUnknown());
        EXPECT_EQ(take().front(), c.isOver ? "reassert" : "ready") << c.what;
        EXPECT_TRUE(kiosk.holds) << c.what;
        run(session->biometricAccepted());
        take();
    }
}

TEST_F(LockSessionTest, WhatWouldBeHandedOffAtOnceIsLeftToASystemLockThatCannotComeLater) {
    replacesLock = true;
    const auto expectLeft = [this](const char* why) {
        lock();
        EXPECT_FALSE(session->isLocked()) << why;
        EXPECT_EQ(take().back(), "engageMacOSLock") << why;
        EXPECT_FALSE(markers.marker) << why;
        EXPECT_FALSE(kiosk.holds) << why;
    };
    guard = false;
    expectLeft("nothing guards it");
    guard = true;
    accountFailures = 8;
    expectLeft("the account is near its limit");
    accountFailures = 0;
    markers.writable = false;
    expectLeft("it cannot be marked");
    markers.writable = true;

    lock();
    EXPECT_TRUE(session->isLocked());
    EXPECT_EQ(std::ranges::count(take(), "write"), 1);
    EXPECT_TRUE(markers.marker);
    run(session->biometricAccepted());

    // One that has begun is never left: nothing else can take its place.
    markers.marker = LockMarker{.bootSession = "boot"};
    guard = false;
    run(session->resumeIfMarked());
    EXPECT_TRUE(session->isLocked());
}

TEST_F(LockSessionTest, IsLeftOnceToASystemLockThatCannotComeUpOverIt) {
    replacesLock = true;
    session->setHandOffAfter(60);
    const auto timePasses = [this] {
        take();
        loop.advance(61);
        run(session->tick());
        return std::ranges::count(take(), "leave");
    };
    lock();
    EXPECT_EQ(timePasses(), 0) << "no guard would start the other";
    run(session->biometricAccepted());
    mayLeave = true;
    lock();
    kiosk.desktopIsFree = false;
    EXPECT_EQ(timePasses(), 0) << "another locker has the lock";
    run(session->biometricAccepted());
    kiosk.desktopIsFree = true;
    lock();
    markers.writable = false;
    EXPECT_EQ(timePasses(), 0) << "the guard would not know";
    EXPECT_TRUE(session->isLocked());
    run(session->biometricAccepted());
    markers.writable = true;
    lock();
    EXPECT_FALSE(markers.marker->isHandedOff);
    EXPECT_EQ(timePasses(), 1);
    EXPECT_TRUE(session->isLocked()) << "it must not unlock first";
    EXPECT_TRUE(markers.marker->isHandedOff);

    // The process that the guard starts when the locker has had its chance.
    make(10);
    session->setHandOffAfter(60);
    run(session->resumeIfMarked());
    EXPECT_TRUE(markers.marker->isHandedOff);
    EXPECT_EQ(timePasses(), 0) << "the locker did not come";
    run(session->biometricAccepted());
    lock();
    EXPECT_FALSE(markers.marker->isHandedOff);
}

TEST_F(LockSessionTest, ADesktopThatAnotherProgramKeepsIsHandedOff) {
    lock();
    const auto tick = [this] {
        take();
        loop.advance(0.5);
        run(session->tick());
    };
    kiosk.desktopIsFree = false;
    tick();
    EXPECT_THAT(take(), ElementsAre("reassert"));
    kiosk.desktopIsFree = true;
    tick();
    kiosk.desktopIsFree = false;
    tick();
    EXPECT_THAT(take(), ElementsAre("reassert"));
    tick();
    EXPECT_THAT(take(), ElementsAre("reassert", "yield", "engageMacOSLock"));

    // The system's locker releases its grabs a moment after it has announced the unlock.
    session->setUnlocksWithMacOS(false);
    run(session->macOSLocked());
    take();
    run(session->macOSUnlocked());
    EXPECT_THAT(take(), ElementsAre("ready", "reassert"));
    kiosk.desktopIsFree = true;
    tick();
    tick();
    EXPECT_EQ(session->machine().phase, LockPhase(LockPhases::Locked{0}));
    EXPECT_TRUE(kiosk.holds);
}

TEST_F(LockSessionTest, AProgramThatKeepsItsGrabCausesHandOffsTwoSecondsApart) {
    kiosk.engaging.answer = false;
    kiosk.desktopIsFree = false;
    lock();
    std::vector<double> handOffs{loop.uptime()};
    take();
    const auto tickFor = [&](double seconds) {
        for (double passed = 0; passed < seconds; passed += 0.05) {
            loop.advance(0.05);
            run(session->tick());
            for (const auto& call : take())
                if (call == "engageMacOSLock") handOffs.push_back(loop.uptime());
        }
    };
    tickFor(30);
    // The lock keeps asking, but never more often than a hand-off may take to be confirmed.
    EXPECT_GT(handOffs.size(), 10u);
    for (std::size_t i = 1; i < handOffs.size(); ++i) EXPECT_GE(handOffs[i] - handOffs[i - 1], 2.0);

    kiosk.desktopIsFree = true;
    tickFor(3);
    handOffs.clear();
    EXPECT_EQ(session->machine().phase, LockPhase(LockPhases::Locked{0}));
    EXPECT_TRUE(kiosk.holds);
    tickFor(30);
    EXPECT_TRUE(handOffs.empty());
}

}  // namespace
