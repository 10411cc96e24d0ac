// The lock is handed off to lockers of the session. Some of them work and some fail, but none
// unlocks Karvo.

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

/// Presses keys for this long, and then until `isOver`, and checks that the desktop stays hidden,
/// that no key reaches a program, and that no shortcut of the window manager runs one.
void expectNothingGetsThrough(
    LockDesk& desk, std::chrono::milliseconds time,
    const std::function<bool()>& isOver = [] { return true; }) {
    const int keys = desk.window().keyPresses();
    const auto isSeen = [&] {
        // A key that inserts no text.
        desk.screen().press({XK_F7});
        desk.screen().press({XK_Super_L, XK_r});
        return !desk.isCovered();
    };
    bool wasSeen = eventually(isSeen, time);
    EXPECT_TRUE(eventually([&] { return wasSeen || isOver() || (wasSeen = isSeen()); }));
    EXPECT_FALSE(wasSeen) << "the desktop is seen";
    EXPECT_EQ(desk.window().keyPresses(), keys);
    EXPECT_EQ(desk.desktop.shortcutRuns(), 0);
}

/// Unlocks with the password and checks that the desktop is back as it was.
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
    // The locker stays above the covers, and the programs below receive no key.
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

// It was moved to another master, and the locker has only the core keyboard.
TEST(HandedOffLock, KeepsAKeyboardThatTheLockerDoesNotHave) {
    LockDesk desk(withRealDevices());
    SessionLocker locker(desk.desktop, SessionLocker::i3lock);
    desk.setSettings(handsOffSoon);
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockByShortcut());
    desk.desktop.moveKeyboard(1, desk.window().id());
    ASSERT_TRUE(eventually([&] { return locker.isOn() && locker.isLocked(); }));
    desk.desktop.devices().useKeyboard(1);
    expectNothingGetsThrough(desk, std::chrono::seconds(1));
    // Until now its keys were also caught by the guard.
    ::kill(karvo.guards().front(), SIGKILL);
    expectNothingGetsThrough(desk, std::chrono::seconds(1));
    desk.desktop.moveKeyboardBack(1);
    desk.desktop.devices().useKeyboard(0);
    ASSERT_TRUE(locker.unlock());
    expectThePasswordOpens(desk);
}

struct Failure {
    const char* name;
    /// Null means that there is no locker.
    const char* commands;
    /// The least time from the lock until the locker has failed. One that ends is waited for.
    std::chrono::seconds time;
    bool ends = false;
    /// The locker is started independently of the lock, while another session is on the screen.
    bool whileAway = false;
    /// Keys that are held down all the time.
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
        expectNothingGetsThrough(desk, failure.time,
                                 [&] { return !failure.ends || locker->ends() == 1; });
    else
        EXPECT_TRUE(stays([&] { return desk.isCovered(); }, failure.time)) << "the desktop is seen";
    EXPECT_GT(logind.lockRequests(), requests);
    if (locker) {
        EXPECT_EQ(locker->starts(), 1);
    }
    for (const auto key : failure.held) desk.screen().keyUp(key);
    // End a hanging locker, as the owner would from another terminal.
    for (const pid_t pid : descendantsRunning("/usr/bin/sleep")) ::kill(pid, SIGKILL);
    expectNothingGetsThrough(desk, std::chrono::seconds(3));
    expectThePasswordOpens(desk);
}

using std::chrono::seconds;
INSTANTIATE_TEST_SUITE_P(
    All, FailingLocker,
    testing::Values(
        Failure{"Missing", nullptr, seconds(8)},  //
        Failure{"ExitsAtOnce", "false", seconds(3), true},
        Failure{"GivesUpAfterAWhile", "sleep 2", seconds(3), true},
        Failure{"NeverCovers", "exec sleep 1000", seconds(8)},
        // The locker covers the screen, grabs the keyboard and runs as long as one that is
        // unlocked.
        Failure{"EndsWithoutAPassword", "exec timeout 30 i3lock -n -c 203040", seconds(9), true},
        Failure{"CoversAndHangs",
                "i3lock -n -c 203040 & sleep 2; kill -STOP $!; sleep 1000; kill -KILL $!",
                seconds(10)},
        Failure{"Crashes", "exec timeout -s SEGV 4 i3lock -n -c 203040", seconds(3), true},
        Failure{"GivesUpWhileAway", "sleep 2", seconds(3), true, true},
        Failure{.name = "AgainstTheHeldShortcut",
                .commands = SessionLocker::i3lock,
                .time = seconds(10),
                .held = {XK_Super_L, XK_Alt_L, XK_l}},
        Failure{.name = "AgainstHeldAltTab",
                .commands = SessionLocker::i3lock,
                .time = seconds(10),
                .held = {XK_Alt_L, XK_Tab}}),
    [](const auto& failure) { return failure.param.name; });

}  // namespace
}  // namespace DesktopTest
