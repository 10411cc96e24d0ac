#include "SwayDesk.h"

// The lock in a Wayland session, seen from outside: pictures of every output, real keys, and a
// terminal behind the lock that keeps whatever reaches it.

namespace DesktopTest {
namespace {

class WaylandLock : public testing::Test {
  protected:
    void SetUp() override {
        if (const auto obstacle = SwayDesk::obstacle()) GTEST_SKIP() << *obstacle;
    }
};

TEST_F(WaylandLock, HidesEveryOutputUntilTheOwnersPassword) {
    SwayDesk desk(2);
    auto& karvo = desk.startKarvo();
    const auto before = desk.typed();
    ASSERT_TRUE(desk.lock());
    const auto outputs = desk.outputs();
    ASSERT_EQ(outputs.size(), 2U);
    EXPECT_TRUE(desk.hasPill(outputs.back()));
    desk.keepPictures("locked");
    // Wherever the compositor puts the keyboard, the card gets the keys.
    for (const auto& output : outputs) {
        desk.sway("focus output " + output);
        const int attempts = desk.attempts();
        desk.submit("wrong");
        EXPECT_TRUE(eventually([&] { return desk.attempts() == attempts + 1; })) << output;
        EXPECT_TRUE(desk.isHidden());
    }
    EXPECT_TRUE(desk.says(outputs.front(), "incorrect"));
    EXPECT_EQ(desk.typed(), before) << "what was typed reached the window behind";
    EXPECT_TRUE(desk.unlock());
    EXPECT_TRUE(desk.typesIntoTerminal());
    // Again, since what is left of the first lock must not be in the way.
    ASSERT_TRUE(desk.lock());
    EXPECT_TRUE(desk.unlock());
    EXPECT_TRUE(karvo.isRunning());
}

TEST_F(WaylandLock, OutputsComeAndGoUnderIt) {
    SwayDesk desk(2);
    auto& karvo = desk.startKarvo();
    const auto before = desk.typed();
    ASSERT_TRUE(desk.lock());
    const auto staysHidden = [&] {
        return eventually([&] { return desk.isHidden(); }) &&
               stays([&] { return desk.isHidden() && karvo.isRunning(); },
                     std::chrono::milliseconds(500));
    };
    desk.sway("create_output");
    EXPECT_TRUE(eventually([&] { return desk.outputs().size() == 3; }));
    EXPECT_TRUE(staysHidden());
    EXPECT_TRUE(desk.hasPill("HEADLESS-3"));
    desk.sway("output HEADLESS-3 mode 1024x768");
    desk.sway("output HEADLESS-1 scale 1.5");
    EXPECT_TRUE(staysHidden());
    EXPECT_TRUE(desk.says("HEADLESS-1", "enter your password")) << "drawn anew";
    desk.keepPictures("scaled");
    desk.sway("output HEADLESS-1 scale 1");
    desk.sway("output HEADLESS-1 unplug");
    EXPECT_TRUE(staysHidden());
    EXPECT_TRUE(desk.says("HEADLESS-2", "enter your password")) << "the card moves";
    desk.sway("output HEADLESS-2 unplug");
    desk.sway("output HEADLESS-3 unplug");
    EXPECT_TRUE(eventually([&] { return desk.outputs().empty(); }));
    EXPECT_TRUE(stays([&] { return karvo.isRunning(); }, std::chrono::milliseconds(500)));
    desk.sway("create_output");
    EXPECT_TRUE(staysHidden());
    ASSERT_FALSE(desk.outputs().empty());
    EXPECT_TRUE(desk.says(desk.outputs().front(), "enter your password"));
    EXPECT_EQ(desk.typed(), before);
    EXPECT_TRUE(desk.unlock());
    EXPECT_TRUE(karvo.isRunning());
}

TEST_F(WaylandLock, TheGuardBringsAKilledAppBackAndNothingElse) {
    SwayDesk desk;
    auto& karvo = desk.startKarvo();
    const auto before = desk.typed();
    ASSERT_TRUE(desk.lock());
    karvo.kill();
    EXPECT_TRUE(desk.isHidden());
    desk.submit("x");
    ASSERT_TRUE(eventually([&] { return desk.apps().size() == 1; }));
    // Of either card: the keys may have come to the new one.
    EXPECT_TRUE(desk.says("HEADLESS-1", "password"));
    EXPECT_EQ(desk.lockerStarts(), 0) << "it would shut the app out";
    // A second death so soon says that starting the app does not help.
    kill(desk.apps().front(), SIGKILL);
    EXPECT_TRUE(eventually([&] { return desk.lockerStarts() > 0; }));
    EXPECT_TRUE(stays([&] { return desk.isHidden(); }, std::chrono::milliseconds(500)));
    EXPECT_EQ(desk.typed(), before);
}

TEST_F(WaylandLock, HoldsWithoutTheAppAndTheGuard) {
    SwayDesk desk;
    auto& karvo = desk.startKarvo();
    const auto before = desk.typed();
    ASSERT_TRUE(desk.lock());
    for (const auto guard : desk.guards()) kill(guard, SIGKILL);
    karvo.kill();
    desk.submit("x");
    EXPECT_TRUE(stays([&] { return desk.isHidden(); }, std::chrono::milliseconds(500)));
    EXPECT_EQ(desk.typed(), before);
    // It takes the lock over.
    desk.startKarvo();
    EXPECT_TRUE(desk.says("HEADLESS-1", "enter your password"));
    EXPECT_TRUE(desk.unlock());
    EXPECT_TRUE(desk.typesIntoTerminal());
}

TEST_F(WaylandLock, IsHandedOffToTheSessionsLockerWithoutOpening) {
    SwayDesk desk;
    desk.setSettings(R"({"handOffAfter": 2})");
    auto& karvo = desk.startKarvo();
    const auto before = desk.typed();
    desk.open("karvo://lock");
    ASSERT_TRUE(eventually([&] { return desk.isHidden(); }));
    bool wasHidden = true;
    EXPECT_TRUE(eventually([&] {
        wasHidden = wasHidden && desk.isHidden();
        return desk.showsLocker();
    }));
    EXPECT_TRUE(wasHidden);
    EXPECT_FALSE(karvo.isRunning());
    desk.submit("x");
    // The program waits behind the locker for whatever becomes of it.
    EXPECT_TRUE(eventually([&] { return desk.apps().size() == 1; }));
    EXPECT_TRUE(stays([&] { return desk.showsLocker() && desk.apps().size() == 1; },
                      std::chrono::seconds(5)))
        << "it is handed off once";
    EXPECT_EQ(desk.typed(), before);
    desk.endLocker();
    EXPECT_TRUE(desk.says("HEADLESS-1", "enter your password"));
    EXPECT_TRUE(desk.isHidden());
    EXPECT_TRUE(desk.unlock());
}

TEST_F(WaylandLock, LeavesTheScreenToALockerThatHasItAndFollowsIt) {
    SwayDesk desk;
    desk.startKarvo();
    auto& locker = desk.start({"swaylock", "-c", "203040"}, "swaylock");
    ASSERT_TRUE(eventually([&] { return desk.isHidden(); }));
    desk.open("karvo://lock");
    ASSERT_TRUE(eventually([&] { return desk.isMarked(); }));
    EXPECT_TRUE(stays([&] { return desk.isHidden() && locker.isRunning(); },
                      std::chrono::milliseconds(700)));
    // The lock that was asked for comes when the other has gone, however that came about.
    locker.kill();
    EXPECT_TRUE(desk.says("HEADLESS-1", "enter your password"));
    EXPECT_TRUE(desk.isHidden());
    EXPECT_TRUE(desk.unlock());
}

}  // namespace
}  // namespace DesktopTest
