// The lock passes to lockers of the session: some lock, some fail, and none of them opens it.

#include "LockDesk.h"
#include "SessionLocker.h"

namespace DesktopTest {
namespace {

constexpr const char* handsOffSoon = R"({"handOffAfter": 2})";

Desktop::Options withRealDevices() {
    auto options = LockDesk::oneDisplay();
    options.realDevices = true;
    return options;
}

/// Nothing is seen for this long, no key reaches a program and no shortcut of the window manager
/// runs one, though they are pressed all the time.
void expectNothingGetsThrough(LockDesk& desk, std::chrono::milliseconds time) {
    const int keys = desk.window().keyPresses();
    EXPECT_TRUE(stays(
        [&] {
            // A key that types nothing.
            desk.screen().press({XK_F7});
            desk.screen().press({XK_Super_L, XK_r});
            return desk.isCovered();
        },
        time))
        << "the desktop is seen";
    EXPECT_EQ(desk.window().keyPresses(), keys);
    EXPECT_EQ(desk.desktop.shortcutRuns(), 0);
}

/// Only the password leads out, and all is as it was.
void expectThePasswordOpens(LockDesk& desk) {
    EXPECT_TRUE(desk.unlockWhateverAsks());
    EXPECT_FALSE(std::filesystem::exists(desk.karvo().markerFile()));
    EXPECT_TRUE(eventually([&] { return desk.screen().held().empty(); })) << desk.screen().held();
    EXPECT_TRUE(desk.typesIntoWindow());
    EXPECT_EQ(desk.desktop.shortcutRuns(), 0);
}

struct Locker {
    const char* name;
    const char* commands;
};

class WorkingLocker : public testing::TestWithParam<Locker> {};

TEST_P(WorkingLocker, TakesOverAndItsEndLeavesTheCard) {
    LockDesk desk(Desktop::twoDisplays());
    SessionLocker locker(desk.desktop, GetParam().commands);
    desk.setSettings(handsOffSoon);
    desk.start();
    ASSERT_TRUE(desk.lockByShortcut());
    ASSERT_TRUE(eventually([&] { return locker.isOn() && locker.isLocked(); }));
    // It stays on top of the covers, and a program below hears nothing.
    expectNothingGetsThrough(desk, std::chrono::seconds(3));
    EXPECT_TRUE(locker.isOn());
    ASSERT_TRUE(locker.unlock());
    EXPECT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    expectNothingGetsThrough(desk, std::chrono::seconds(3));
    expectThePasswordOpens(desk);
    EXPECT_EQ(locker.starts(), 1);
}

INSTANTIATE_TEST_SUITE_P(All, WorkingLocker,
                         testing::Values(Locker{"i3lock", SessionLocker::i3lock},
                                         Locker{"xsecurelock", SessionLocker::xsecurelock}),
                         [](const auto& locker) { return locker.param.name; });

struct Failure {
    const char* name;
    /// No locker at all when it is null.
    const char* commands;
    /// From the lock on until the locker has failed.
    std::chrono::seconds time;
    /// Started beside the lock and not by it, while another session comes to the screen and goes.
    bool whileAway = false;
    /// Keys that somebody holds all the time.
    std::vector<xcb_keysym_t> held = {};
};

class FailingLocker : public testing::TestWithParam<Failure> {};

TEST_P(FailingLocker, OpensNothing) {
    const auto& failure = GetParam();
    LockDesk desk(withRealDevices());
    auto& logind = desk.desktop.logind();
    std::optional<SessionLocker> locker;
    if (failure.commands) locker.emplace(desk.desktop, failure.commands);
    if (!failure.whileAway) desk.setSettings(handsOffSoon);
    const int requests = logind.lockRequests();
    desk.start();
    ASSERT_TRUE(desk.lockByShortcut());
    if (failure.whileAway) {
        ASSERT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
        logind.signalLock();
        ASSERT_TRUE(eventually([&] { return locker->starts() == 1; }));
        logind.setActive(false);
        logind.setActive(true);
    }
    for (const auto key : failure.held) desk.screen().keyDown(key);
    if (failure.held.empty())
        expectNothingGetsThrough(desk, failure.time);
    else
        EXPECT_TRUE(stays([&] { return desk.isCovered(); }, failure.time)) << "the desktop is seen";
    EXPECT_GT(logind.lockRequests(), requests);
    if (locker) {
        EXPECT_EQ(locker->starts(), 1);
    }
    for (const auto key : failure.held) desk.screen().keyUp(key);
    // One that hangs is ended from another terminal, so that the owner can get in.
    for (const pid_t pid : descendantsRunning("/usr/bin/sleep")) ::kill(pid, SIGKILL);
    expectNothingGetsThrough(desk, std::chrono::seconds(3));
    expectThePasswordOpens(desk);
}

using std::chrono::seconds;
INSTANTIATE_TEST_SUITE_P(
    All, FailingLocker,
    testing::Values(
        Failure{"Missing", nullptr, seconds(8)},  //
        Failure{"ExitsAtOnce", "false", seconds(6)},
        Failure{"GivesUpAfterAWhile", "sleep 2", seconds(7)},
        Failure{"NeverCovers", "exec sleep 1000", seconds(8)},
        // As long as a locker that is unlocked; it has covered the screen and taken the keyboard.
        Failure{"EndsWithoutAPassword", "exec timeout 12 i3lock -n -c 203040", seconds(17)},
        Failure{"Crashes", "exec timeout -s SEGV 4 i3lock -n -c 203040", seconds(9)},
        Failure{"GivesUpWhileAway", "sleep 2", seconds(5), true},
        Failure{"AgainstTheHeldShortcut",
                SessionLocker::i3lock,
                seconds(10),
                false,
                {XK_Super_L, XK_Alt_L, XK_l}},
        Failure{
            "AgainstHeldAltTab", SessionLocker::i3lock, seconds(10), false, {XK_Alt_L, XK_Tab}}),
    [](const auto& failure) { return failure.param.name; });

}  // namespace
}  // namespace DesktopTest
