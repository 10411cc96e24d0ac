// The program dies during a lock.

#include "LockDesk.h"
#include "SessionLocker.h"

namespace DesktopTest {
namespace {

constexpr std::chrono::seconds longEnough{3};

/// Kills the running app, which the guard may have started.
void killApp(LockDesk& desk) {
    // A program that the app starts counts as an app until it has called exec.
    ASSERT_TRUE(eventually([&] { return desk.karvo().apps().size() == 1; }));
    const auto apps = desk.karvo().apps();
    ::kill(apps.front(), SIGKILL);
    ASSERT_TRUE(eventually([&] {
        const auto now = desk.karvo().apps();
        return now.empty() || now.front() != apps.front();
    }));
}

TEST(LockCrash, TheGuardLocksTheSessionAndBringsTheLockBackOnce) {
    LockDesk desk(Desktop::twoDisplays());
    auto& logind = desk.desktop.logind();
    SessionLocker locker(desk.desktop);
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockToCard(leftDisplay));
    const int requests = logind.lockRequests();

    killApp(desk);
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() > requests; }));
    EXPECT_TRUE(eventually([&] { return karvo.apps().size() == 1; }));
    ASSERT_TRUE(eventually([&] { return locker.isLocked(); }));
    ASSERT_TRUE(karvo.waitUntilReady());
    EXPECT_TRUE(stays([&] { return desk.isCovered(); }, longEnough));
    // The locker and the card are both up; the one that grabbed the keyboard first gets the
    // password. A locker that comes too late gives up after a while, which must not unlock.
    EXPECT_TRUE(desk.unlockWhateverAsks());
    EXPECT_FALSE(std::filesystem::exists(karvo.markerFile()));
    EXPECT_EQ(karvo.guards().size(), 1U);
    EXPECT_TRUE(desk.typesIntoWindow());

    // After a second crash in a short time there is no relaunch.
    ASSERT_TRUE(desk.lockToCard(leftDisplay));
    const int requestsBefore = logind.lockRequests();
    killApp(desk);
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == requestsBefore + 1; }));
    EXPECT_TRUE(eventually([&] { return locker.isOn(); }));
    EXPECT_TRUE(stays([&] { return karvo.apps().empty(); }, longEnough));
    EXPECT_EQ(logind.lockRequests(), requestsBefore + 1);
}

TEST(LockCrash, WhenItIsNotRelaunchedTheDesktopStaysHiddenUntilTheOwnerAsks) {
    LockDesk desk;
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockToCard());
    killApp(desk);
    ASSERT_TRUE(desk.takesPassword());
    const int keys = desk.window().keyPresses();
    killApp(desk);
    ASSERT_TRUE(eventually([&] { return karvo.apps().empty(); }));
    EXPECT_TRUE(stays(
        [&] {
            // Another window comes to the top and takes the focus.
            desk.window().raise();
            desk.window().takeFocus();
            desk.screen().type("a");
            return desk.isCovered();
        },
        longEnough));
    EXPECT_EQ(desk.window().keyPresses(), keys);
    EXPECT_TRUE(karvo.apps().empty());
    // A program with nested windows can leave the focus at None.
    xcb_set_input_focus(desk.screen().connection(), XCB_INPUT_FOCUS_NONE, XCB_INPUT_FOCUS_NONE,
                        XCB_CURRENT_TIME);
    desk.screen().sync();
    EXPECT_TRUE(eventually([&] { return desk.screen().focusedWindow() != XCB_NONE; }));
    // Clear the typed text, which would count as a password.
    desk.screen().press({XK_Escape});
    desk.screen().press({XK_Return});
    EXPECT_TRUE(desk.takesPassword());
    EXPECT_TRUE(desk.unlock() && desk.typesIntoWindow());
}

TEST(LockCrash, AGuardThatIsGoneIsStartedAnewAndStandsInAsWell) {
    LockDesk desk;
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockToCard());
    const auto guard = karvo.guards().front();
    ::kill(guard, SIGKILL);
    ASSERT_TRUE(eventually([&] {
        const auto guards = karvo.guards();
        return guards.size() == 1 && guards.front() != guard;
    }));
    // Wait until the new guard has looked for the stand-in.
    EXPECT_TRUE(desk.staysCovered());
    killApp(desk);
    EXPECT_TRUE(stays([&] { return desk.isCovered(); }, longEnough));
    EXPECT_TRUE(desk.takesPassword());
    EXPECT_TRUE(desk.unlock() && desk.typesIntoWindow());
}

TEST(LockCrash, NothingIsSeenHoweverLongTheGuardTakes) {
    LockDesk desk;
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockToCard());
    const auto guard = karvo.guards().front();
    ::kill(guard, SIGSTOP);
    killApp(desk);
    SampleWindow popup(desk.desktop.display(), {500, 230, 300, 140}, 0xff00ff,
                       SampleWindow::Kind::popup, "Popup");
    EXPECT_TRUE(stays(
        [&] {
            desk.window().raise();
            return desk.isCovered();
        },
        longEnough));
    ::kill(guard, SIGCONT);
    EXPECT_TRUE(eventually([&] { return desk.desktop.logind().lockRequests() == 1; }));
    EXPECT_TRUE(desk.takesPassword());
    EXPECT_TRUE(desk.isCovered());
    popup.unmap();
    EXPECT_TRUE(desk.unlock() && desk.typesIntoWindow());
}

TEST(LockCrash, AKeyThatIsHeldAllTheTimeOpensNothing) {
    auto options = LockDesk::oneDisplay();
    options.realDevices = true;
    LockDesk desk(options);
    SessionLocker locker(desk.desktop);
    desk.start();
    ASSERT_TRUE(desk.lockToCard());
    desk.screen().keyDown(XK_a);
    killApp(desk);
    EXPECT_TRUE(stays([&] { return desk.isCovered(); }, std::chrono::seconds(6)));
    desk.screen().keyUp(XK_a);
    EXPECT_TRUE(desk.unlockWhateverAsks());
    EXPECT_EQ(desk.screen().held(), "");
    EXPECT_TRUE(desk.typesIntoWindow());
}

struct SecondLocker {
    const char* name;
    const char* commands;
};

class AppIsGone : public testing::TestWithParam<SecondLocker> {};

TEST_P(AppIsGone, TheStandInTakesThePasswordWhateverBecomesOfTheLocker) {
    LockDesk desk;
    auto& logind = desk.desktop.logind();
    std::optional<SessionLocker> locker;
    if (GetParam().commands) locker.emplace(desk.desktop, GetParam().commands);
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockToCard());
    const int requests = logind.lockRequests();
    const int keys = desk.window().keyPresses();
    const auto guard = karvo.guards().front();
    ::kill(guard, SIGSTOP);
    killApp(desk);
    std::filesystem::rename(karvo.binary(), karvo.binary().string() + ".gone");
    ::kill(guard, SIGCONT);
    ASSERT_TRUE(eventually([&] { return logind.lockRequests() > requests; }));
    if (locker) {
        ASSERT_TRUE(eventually([&] { return locker->ends() == 1; }));
    }
    EXPECT_TRUE(stays(
        [&] {
            desk.screen().press({XK_F7});
            desk.screen().press({XK_Super_L, XK_r});
            return desk.isCovered();
        },
        longEnough));
    desk.submit("wrong guess");
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_EQ(desk.window().keyPresses(), keys);
    EXPECT_EQ(desk.desktop.shortcutRuns(), 0);
    EXPECT_TRUE(desk.unlockWhateverAsks());
    EXPECT_FALSE(std::filesystem::exists(karvo.markerFile()));
    EXPECT_TRUE(desk.typesIntoWindow());
}

INSTANTIATE_TEST_SUITE_P(
    All, AppIsGone,
    testing::Values(SecondLocker{"WithoutALocker", nullptr},
                    SecondLocker{"LockerGivesUp", "sleep 2; false"},
                    SecondLocker{"LockerCrashes", "exec timeout -s SEGV 4 i3lock -n -c 203040"}),
    [](const auto& locker) { return locker.param.name; });

TEST(LockCrash, WithoutALockTheGuardStaysPut) {
    LockDesk desk;
    auto& karvo = desk.start();
    killApp(desk);
    EXPECT_TRUE(stays([&] { return karvo.apps().empty(); }, longEnough));
    EXPECT_EQ(desk.desktop.logind().lockRequests(), 0);
    EXPECT_EQ(karvo.guards().size(), 1U);
}

TEST(LockCrash, AMarkerOfThisBootBringsTheLockBackAtTheStart) {
    LockDesk desk;
    const auto marker = desk.desktop.dataFolder() / "Karvo/state.json";
    std::filesystem::create_directories(marker.parent_path());
    std::string boot;
    std::ifstream("/proc/sys/kernel/random/boot_id") >> boot;
    writeText(marker, R"({"lockedAt": "2026-01-02T03:04:05Z", "failures": 0, "bootSession": ")" +
                          boot + "\"}");
    desk.start();
    EXPECT_TRUE(eventually([&] { return desk.isCovered(); }));
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    // If the guard starts only after the lock, the lock is handed off first, and input is lost
    // until the card is back.
    EXPECT_TRUE(desk.unlockWhateverAsks());
    EXPECT_FALSE(std::filesystem::exists(marker));
}

/// Starts the user manager of systemd in a mount namespace where it finds the folders of a machine
/// that systemd has booted. False if this machine has no such manager or does not permit the
/// namespace.
bool startUserManager(Desktop& desktop) {
    std::ifstream description(KARVO_GUARD_UNIT);
    std::string unit(std::istreambuf_iterator<char>(description), {});
    const std::string variable = "@KARVO_PROGRAMS@";
    for (auto at = unit.find(variable); at != std::string::npos; at = unit.find(variable))
        unit.replace(at, variable.size(), desktop.folder() / "bin");
    writeText(desktop.configFolder() / "systemd/user/karvo-guard.service", unit);
    desktop.start({"unshare", "--mount", "sh", "-c",
                   "mount -t tmpfs tmpfs /run/systemd && mkdir /run/systemd/system && "
                   "exec /lib/systemd/systemd --user"},
                  "user-manager");
    const auto socket = desktop.folder() / "run/systemd/private";
    return eventually([&] { return std::filesystem::exists(socket); }, std::chrono::seconds(10));
}

TEST(LockCrash, TheUserManagerBringsBothBackAndTheScreenIsHidden) {
    LockDesk desk;
    if (!startUserManager(desk.desktop))
        GTEST_SKIP()
            << "SKIPPED: no user manager of systemd, or mount namespaces are not permitted";
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockToCard());
    const auto before = karvo.guards();
    ASSERT_EQ(before.size(), 1U);
    for (const auto& pids : {karvo.apps(), before})
        for (const pid_t pid : pids) ::kill(pid, SIGKILL);
    EXPECT_TRUE(eventually([&] {
        const auto guards = karvo.guards();
        return guards.size() == 1 && guards != before;
    }));
    EXPECT_TRUE(eventually([&] { return desk.isCovered(); }));
    EXPECT_TRUE(stays([&] { return desk.isCovered(); }, longEnough));
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    EXPECT_TRUE(desk.unlock() && desk.typesIntoWindow());
}

}  // namespace
}  // namespace DesktopTest
