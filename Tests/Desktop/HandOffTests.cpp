// The lock is handed off to the session's own lock, which may or may not answer.

#include "LockDesk.h"

namespace DesktopTest {
namespace {

// Forbids the app to start the guard, which is the simplest reason for a hand-off.
Karvo::Options withoutGuard() {
    Karvo::Options options;
    options.environment["ORVEL_NO_GUARD"] = "1";
    return options;
}

/// Checks that after a hand-off the card has the keyboard again and accepts the password.
void expectTheCardIsBack(LockDesk& desk) {
    EXPECT_TRUE(desk.takesPassword());
    EXPECT_TRUE(desk.isCovered());
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "incorrect password"));
    EXPECT_TRUE(desk.unlock() && desk.typesIntoWindow());
}

TEST(LockHandOff, WithoutAGuardAndWithoutAnAnswerTheCardComesBack) {
    LockDesk desk;
    desk.start(withoutGuard());
    ASSERT_TRUE(desk.lockByShortcut());
    EXPECT_TRUE(eventually([&] { return desk.desktop.logind().lockRequests() == 1; }));
    EXPECT_TRUE(desk.karvo().guards().empty());
    EXPECT_TRUE(std::filesystem::exists(desk.karvo().markerFile()));
    expectTheCardIsBack(desk);
    EXPECT_EQ(desk.desktop.logind().lockRequests(), 1);
}

TEST(LockHandOff, AMarkerThatCannotBeWrittenHandsOff) {
    LockDesk desk;
    auto& karvo = desk.start();
    // Permissions would not stop root. The guard makes the folder again as soon as it is gone.
    const auto folder = desk.desktop.dataFolder() / "Karvo";
    ASSERT_TRUE(eventually([&] {
        std::filesystem::remove_all(folder);
        writeText(folder, "not a folder");
        return std::filesystem::is_regular_file(folder);
    }));
    ASSERT_EQ(karvo.guards().size(), 1U);
    ASSERT_TRUE(desk.lockByShortcut());
    EXPECT_TRUE(eventually([&] { return desk.desktop.logind().lockRequests() == 1; }));
    EXPECT_TRUE(desk.takesPassword());
    // The guard knows of this lock although no marker names it.
    karvo.process().kill();
    EXPECT_TRUE(eventually([&] { return desk.desktop.logind().lockRequests() >= 2; }));
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_TRUE(desk.unlock());
}

TEST(LockHandOff, AProgramThatKeepsTakingTheFocusHandsOff) {
    LockDesk desk;
    auto& logind = desk.desktop.logind();
    auto& other = desk.desktop.addWindow({700, 430, 300, 200}, 0x708090);
    const SampleWindow* const rivals[] = {&desk.window(), &other};
    desk.start();
    ASSERT_TRUE(desk.lockToCard());
    const int keys = desk.window().keyPresses() + other.keyPresses();
    ASSERT_EQ(logind.lockRequests(), 0);
    int round = 0;
    EXPECT_TRUE(eventually([&] {
        desk.screen().activate(rivals[++round % 2]->id());
        desk.screen().type("a");
        // Several losses within one reclaim of the keyboard count as one.
        EXPECT_TRUE(stays([&] { return desk.isCovered(); }, std::chrono::milliseconds(500)));
        return logind.lockRequests() > 0;
    }));
    EXPECT_GE(round, 3);
    EXPECT_EQ(desk.window().keyPresses() + other.keyPresses(), keys);
    EXPECT_TRUE(eventually([&] { return desk.screen().keyboardIsGrabbed(); }));
    EXPECT_TRUE(desk.staysCovered());
}

TEST(LockHandOff, WithoutLogindTheFallbackIsAskedAndTheCardComesBack) {
    auto options = LockDesk::oneDisplay();
    options.logind = false;
    LockDesk desk(options);
    const auto tools = desk.desktop.folder() / "tools";
    const auto asked = desk.desktop.folder() / "asked";
    std::filesystem::create_directories(tools);
    writeText(tools / "xdg-screensaver", "#!/bin/sh\necho \"$@\" >> '" + asked.string() + "'\n");
    std::filesystem::permissions(tools / "xdg-screensaver", std::filesystem::perms::owner_all);
    auto karvo = withoutGuard();
    karvo.environment["PATH"] = tools.string() + ":/usr/bin:/bin";
    desk.start(karvo);
    ASSERT_TRUE(desk.lockByShortcut());
    EXPECT_TRUE(eventually([&] { return textOf(asked) == "lock\n"; }));
    expectTheCardIsBack(desk);
}

}  // namespace
}  // namespace DesktopTest
