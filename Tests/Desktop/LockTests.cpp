// The lock from the owner's point of view: what is visible, what keys do, and how it ends.

#include "LockDesk.h"

namespace {

TEST(Lock, TheShortcutCoversBothDisplaysAndThePasswordGivesThemBack) {
    LockDesk desk(Desktop::twoDisplays());
    auto& screen = desk.screen();
    desk.start();
    screen.movePointer(2400, 900);
    ASSERT_TRUE(desk.window().hasFocus());
    const int keysBefore = desk.window().keyPresses();
    ASSERT_TRUE(desk.lockByShortcut());
    EXPECT_TRUE(eventually([&] { return desk.hasCard(rightDisplay); }));
    EXPECT_TRUE(eventually([&] { return desk.hasPill(leftDisplay); }));
    EXPECT_TRUE(desk.takesPassword(rightDisplay));
    desk.desktop.keepPicture("locked");

    // Keys, clicks and the window manager's shortcuts must not reach the desktop.
    screen.click(300, 520);
    screen.press({XK_Alt_L, XK_Tab});
    screen.press({XK_Alt_L, XK_F4});
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.cardSays(rightDisplay, "incorrect password"));
    desk.desktop.keepPicture("wrong-password");
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_EQ(desk.window().clicks(), 0);
    // Super was pressed before the shortcut was complete.
    EXPECT_EQ(desk.window().keyPresses(), keysBefore + 1);

    EXPECT_TRUE(desk.unlock());
    EXPECT_FALSE(std::filesystem::exists(desk.karvo().markerFile()));
    EXPECT_TRUE(eventually([&] { return desk.window().hasFocus(); }));
    EXPECT_TRUE(desk.typesIntoWindow());
    EXPECT_FALSE(screen.keyboardIsGrabbed());
    EXPECT_EQ(desk.desktop.logind().lockRequests(), 0);

    // Lock again, because no state of the first lock may remain. The click has moved the pointer to
    // the other display.
    ASSERT_TRUE(desk.lockToCard(leftDisplay));
    EXPECT_TRUE(desk.unlock());
}

TEST(Lock, TheFifthWrongPasswordStartsACountDown) {
    LockDesk desk(Desktop::twoDisplays());
    desk.start();
    ASSERT_TRUE(desk.lockToCard(leftDisplay));
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(desk.submitWrong());
    ASSERT_TRUE(desk.cardSays(leftDisplay, "too many attempts wait"));
    // The field shows "Wait 0:42".
    const auto secondsLeft = [&] {
        const auto words = desk.cardWords(leftDisplay);
        for (std::size_t i = 0; i + 2 < words.size(); ++i)
            if (words[i] == "wait" && words[i + 1].size() == 1 && words[i + 2].size() == 2)
                return std::atoi(words[i + 1].c_str()) * 60 + std::atoi(words[i + 2].c_str());
        return 0;
    };
    int first = 0;
    ASSERT_TRUE(eventually([&] { return (first = secondsLeft()) > 0; }));
    desk.desktop.keepPicture("cool-down");
    EXPECT_LE(first, 60);
    EXPECT_TRUE(eventually([&] {
        const int now = secondsLeft();
        return now > 0 && now < first;
    }));
    // Even the right password is ignored now.
    desk.submit(Desktop::password);
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_EQ(desk.attempts(), 5);
}

struct Style {
    const char* name;
    const char* settings;
};

class LockStyles : public testing::TestWithParam<Style> {};

TEST_P(LockStyles, Covers) {
    LockDesk desk(Desktop::twoDisplays());
    desk.desktop.showText("Quarterly salary review\nmeeting with Margaret", 14, 700, 500, false);
    desk.desktop.showText("terminal $ make\nall tests passed", 14, 2600, 500, true, "Dark");
    desk.setSettings(GetParam().settings);
    desk.start();
    ASSERT_TRUE(desk.lockByURL());
    EXPECT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    EXPECT_TRUE(desk.isCovered());
    desk.desktop.keepPicture("locked");
    EXPECT_TRUE(desk.unlock());
}

INSTANTIATE_TEST_SUITE_P(All, LockStyles,
                         testing::Values(Style{"Frosted", R"({"lockStyle": "frosted"})"},
                                         Style{"Ambient", R"({"lockStyle": "ambient"})"},
                                         Style{"Solid", R"({"lockStyle": "solid"})"}),
                         [](const auto& style) { return style.param.name; });

TEST(Lock, WhatComesOnTopIsCoveredAgain) {
    LockDesk desk;
    auto& screen = desk.screen();
    desk.start();
    ASSERT_TRUE(desk.lockToCard());
    constexpr Colour loud = 0xff00ff;
    constexpr Area place{500, 230, 300, 140};
    const auto isSeen = [&] { return screen.picture(place).shareOf(loud, 40) > 0; };

    SampleWindow popup(desk.desktop.display(), place, loud, SampleWindow::Kind::popup, "Popup");
    SampleWindow normal(desk.desktop.display(), place, loud, SampleWindow::Kind::normal, "Normal");
    // The windows must never be visible, not even while the program is stopped and cannot react.
    for (const bool isHeldUp : {false, true}) {
        if (isHeldUp) desk.karvo().process().signal(SIGSTOP);
        for (SampleWindow* window : {&popup, &normal}) {
            EXPECT_FALSE(isSeen());
            for (int i = 0; i < 5; ++i) {
                window->raise();
                window->takeFocus();
                EXPECT_FALSE(isSeen());
                window->unmap();
                window->map();
                EXPECT_FALSE(isSeen());
            }
        }
        EXPECT_TRUE(stays([&] { return !isSeen(); }, std::chrono::seconds(1)));
        screen.click(600, 300);
    }
    // Without a window manager, the server itself puts a raised window on top.
    for (const pid_t pid : descendantsRunning("/usr/bin/openbox")) kill(pid, SIGKILL);
    EXPECT_TRUE(stays([&] { return !isSeen(); }, std::chrono::seconds(1)));
    desk.karvo().process().signal(SIGCONT);
    EXPECT_TRUE(stays([&] { return !isSeen(); }, std::chrono::seconds(1)));
    screen.type("abc");
    screen.click(600, 300);
    EXPECT_EQ(popup.keyPresses() + normal.keyPresses() + popup.clicks() + normal.clicks(), 0);
    EXPECT_TRUE(eventually([&] { return screen.keyboardIsGrabbed(); }));
    EXPECT_TRUE(desk.isCovered());
    for (int i = 0; i < 3; ++i) screen.press({XK_BackSpace});
    desk.submit(Desktop::password);
    EXPECT_TRUE(eventually(isSeen));
}

struct Surroundings {
    const char* name;
    bool windowManager;
    bool compositor;
};

class LockSurroundings : public testing::TestWithParam<Surroundings> {};

TEST_P(LockSurroundings, MakeNoDifference) {
    auto options = LockDesk::oneDisplay();
    options.windowManager = GetParam().windowManager;
    LockDesk desk(options);
    // Without a window manager, keys go to the window under the pointer.
    desk.screen().movePointer(300, 520);
    if (GetParam().compositor) {
        desk.desktop.start({"picom", "--backend", "xrender", "--config", "/dev/null"}, "picom");
        ASSERT_TRUE(eventually([&] { return desk.screen().hasOwner("_NET_WM_CM_S0"); }));
        // Typing makes the compositor paint once, so the stored picture is its picture.
        ASSERT_TRUE(desk.typesIntoWindow());
    }
    desk.start();
    ASSERT_TRUE(desk.lockToCard());
    const int keys = desk.window().keyPresses();
    SampleWindow popup(desk.desktop.display(), {500, 230, 300, 140}, 0xff00ff,
                       SampleWindow::Kind::popup, "Popup");
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_EQ(desk.window().keyPresses(), keys);
    popup.unmap();
    EXPECT_TRUE(desk.unlock() && desk.typesIntoWindow());
}

INSTANTIATE_TEST_SUITE_P(All, LockSurroundings,
                         testing::Values(Surroundings{"NoWindowManager", false, false},
                                         Surroundings{"Compositor", true, true}),
                         [](const auto& surroundings) { return surroundings.param.name; });

TEST(Lock, ASecondRequestAndAQuitChangeNothing) {
    LockDesk desk;
    auto& karvo = desk.start();
    ASSERT_TRUE(desk.lockByURL());
    ASSERT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    EXPECT_EQ(karvo.startAgain({"karvo://lock"}).waitForExit(), 0);
    desk.screen().press({XK_Super_L, XK_l});
    sd_bus_call_method(desk.desktop.sessionBus().connection(), "com.brindlewick.karvo",
                       "/com/brindlewick/karvo", "org.freedesktop.Application", "ActivateAction",
                       nullptr, nullptr, "sava{sv}", "quit", 0, 0);
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_TRUE(karvo.process().isRunning());
    desk.screen().press({XK_Escape});
    EXPECT_TRUE(desk.unlock());

    // The end of the session is not refused.
    ASSERT_TRUE(desk.lockToCard());
    karvo.process().signal(SIGTERM);
    EXPECT_EQ(karvo.process().waitForExit(), 0);
}

}  // namespace
