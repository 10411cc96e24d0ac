// What is visible of locked and private apps on a desktop with other programs.

#include "CoverDesk.h"

namespace {

constexpr std::chrono::seconds longEnough{2};

TEST(AppLock, TheShortcutLocksTheAppInFrontAndThePasswordOpensIt) {
    CoverDesk desk;
    auto& pink = desk.pink();
    auto& blue = desk.blue();
    desk.start();
    desk.activate(pink, 1);
    const int before = desk.keys(pink);
    ASSERT_TRUE(desk.lock(pink));
    EXPECT_TRUE(desk.badgeSays(pink, "is locked", 1));
    desk.desktop.keepPicture("locked-app");
    // The app receives the modifiers of the shortcut, but nothing that is typed afterwards.
    desk.screen().type("abc");
    EXPECT_TRUE(desk.isClear(blue));

    desk.screen().press({XK_Super_L, XK_Alt_L, XK_l});
    EXPECT_TRUE(desk.badgeSays(pink, "enter your password", 1));
    desk.desktop.keepPicture("open-badge");
    desk.screen().type("wrong guess");
    desk.screen().press({XK_Return});
    EXPECT_TRUE(desk.badgeSays(pink, "incorrect password", 1));
    EXPECT_TRUE(stays([&] { return desk.isHidden(pink); }, longEnough));
    // The modifiers, and a key without a symbol that follows them.
    EXPECT_LE(desk.keys(pink), before + 3);

    desk.screen().type(Desktop::password);
    desk.screen().press({XK_Return});
    EXPECT_TRUE(eventually([&] { return desk.isClear(pink, 1); }));
    EXPECT_TRUE(eventually([&] { return desk.screen().activeWindow() == pink.windows[1]; }));
    const int after = desk.keys(pink);
    desk.screen().type("abc");
    EXPECT_TRUE(eventually([&] { return desk.keys(pink) == after + 3; }));
    EXPECT_EQ(desk.desktop.logind().lockRequests(), 0);
}

TEST(AppLock, TheBadgeStandsInFrontOfACoverOnTwoDisplays) {
    CoverDesk desk;
    auto& pink = desk.addApp("pink", 0xff00ff, 0xff00f0, {{1670, 300, 500, 300}});
    desk.start();
    desk.activate(pink);
    ASSERT_TRUE(desk.lock(pink));
    EXPECT_TRUE(desk.badgeSays(pink, "is locked"));
    desk.screen().press({XK_Super_L, XK_Alt_L, XK_l});
    EXPECT_TRUE(desk.badgeSays(pink, "enter your password"));
    EXPECT_TRUE(desk.isHidden(pink));
    // The end of the session is not refused.
    desk.karvo().process().signal(SIGTERM);
    EXPECT_EQ(desk.karvo().process().waitForExit(), 0);
}

TEST(PrivateApps, AreCoveredUnlessInUseAndClearForAPeek) {
    CoverDesk desk;
    auto& pink = desk.pink();
    auto& blue = desk.blue();
    desk.start({"pink"});
    desk.activate(pink, 1);
    EXPECT_TRUE(eventually([&] { return desk.isClear(pink, 1); }));
    desk.activate(blue);
    ASSERT_TRUE(eventually([&] { return desk.isHidden(pink); }));
    EXPECT_TRUE(desk.isClear(blue));
    desk.desktop.keepPicture("private-apps");

    // Where the two windows overlap, the front one hides the other.
    const auto peek = [&](int x, int y) {
        desk.screen().movePointer(x, y);
        desk.screen().keyDown(XK_Alt_L);
    };
    peek(450, 450);
    EXPECT_TRUE(eventually([&] { return desk.isClear(pink, 1); }));
    EXPECT_EQ(desk.shown(pink, {210, 210, 180, 200}), 0);
    desk.screen().keyUp(XK_Alt_L);
    EXPECT_TRUE(eventually([&] { return desk.isHidden(pink); }));

    // A window in front prevents a peek at the window behind it.
    auto& lid = desk.addApp("lid", 0x00ff00, 0x00ff88, {{600, 200, 700, 600}});
    ASSERT_TRUE(eventually([&] { return desk.isClear(lid); }));
    peek(650, 450);
    EXPECT_TRUE(stays([&] { return desk.isHidden(pink); }, longEnough));
    desk.screen().keyUp(XK_Alt_L);

    // A click goes through the cover to the private app.
    const auto area = desk.areaOf(pink);
    desk.screen().click(area.x + 50, area.y + 50);
    EXPECT_TRUE(eventually([&] { return desk.isClear(pink); }));
    EXPECT_EQ(desk.screen().activeWindow(), pink.windows[0]);
}

TEST(Cover, NothingOfAWindowEscapesWhileItMoves) {
    CoverDesk desk;
    auto& pink = desk.addApp("pink", 0xff00ff, 0xff00f0, {{200, 200, 500, 300}});
    auto& blue = desk.blue();
    desk.start({"pink"});
    desk.activate(blue);
    ASSERT_TRUE(eventually([&] { return desk.isHidden(pink); }));

    // Move the window back and forth on its display until all pictures are taken. A cover shrinks
    // to its window when that has not moved for a while, so `moves` starts again after a late move.
    std::atomic<int> moves = 0;
    std::atomic<bool> isLooking = true;
    std::thread mover([&] {
        Screen hand(desk.desktop.display());
        const auto moveTo = [&](std::uint32_t x) {
            xcb_configure_window(hand.connection(), pink.windows[0], XCB_CONFIG_WINDOW_X, &x);
            hand.sync();
        };
        auto last = std::chrono::steady_clock::now();
        for (std::uint32_t i = 0; isLooking; ++i) {
            const std::uint32_t step = i % 240;
            moveTo(200 + (step < 120 ? step : 240 - step) * 10);
            const auto now = std::chrono::steady_clock::now();
            moves = now - last < std::chrono::milliseconds(100) ? moves + 1 : 0;
            last = now;
            std::this_thread::sleep_for(std::chrono::milliseconds(16));
        }
        // Only the background is next to the window here.
        moveTo(2590);
    });
    // A part of the display, because a large picture delays the moves.
    const Area strip{0, 300, 1920, 20};
    int looks = 0;
    double most = 0;
    EXPECT_TRUE(eventually(
        [&] {
            if (moves < 60) return false;
            const double seen = desk.shown(pink, strip);
            if (moves < 60) return false;
            most = std::max(most, seen);
            return ++looks == 100;
        },
        std::chrono::minutes(2)));
    isLooking = false;
    mover.join();
    EXPECT_EQ(most, 0);
    // At rest the cover is no larger than the window, so the background beside it is unchanged.
    const Area area = desk.areaOf(pink);
    const Area beside{area.x - 80, area.y, 60, area.height};
    EXPECT_TRUE(eventually([&] { return desk.screen().picture(beside).shareOf(0x506070) == 1; }));
    EXPECT_TRUE(desk.isHidden(pink));
}

TEST(Cover, FollowsWhateverHappensToItsWindow) {
    CoverDesk desk;
    auto& pink = desk.addApp("pink", 0xff00ff, 0xff00f0, {{200, 200, 500, 300}});
    auto& blue = desk.addApp("blue", 0x0000ff, 0x00ffff, {{400, 300, 500, 300}});
    desk.start({"pink"});
    desk.activate(blue);
    ASSERT_TRUE(eventually([&] { return desk.isHidden(pink); }));
    Screen& screen = desk.screen();
    auto* const connection = screen.connection();
    const auto window = pink.windows[0];
    const auto staysHidden = [&] {
        return stays([&] { return desk.isHidden(pink); }, std::chrono::milliseconds(700));
    };
    const auto stack = [&](xcb_window_t of, std::uint32_t mode) {
        xcb_configure_window(connection, screen.frameOf(of), XCB_CONFIG_WINDOW_STACK_MODE, &mode);
        screen.sync();
    };

    // A window in front of the covered one stays visible.
    EXPECT_GT(desk.shown(blue, desk.areaOf(blue)), 0.95);
    stack(window, XCB_STACK_MODE_ABOVE);
    EXPECT_TRUE(eventually([&] { return desk.isHidden(pink); }));
    EXPECT_TRUE(eventually([&] { return desk.shown(blue, {450, 350, 200, 100}) == 0; }));
    stack(window, XCB_STACK_MODE_BELOW);
    EXPECT_TRUE(eventually([&] { return desk.shown(blue, desk.areaOf(blue)) > 0.95; }));
    EXPECT_TRUE(staysHidden());

    const std::uint32_t size[] = {900, 600};
    xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size);
    screen.sync();
    // The server shows the larger window immediately; the cover follows after the event.
    EXPECT_TRUE(eventually([&] { return desk.isHidden(pink); }));
    EXPECT_TRUE(staysHidden());
    for (int i = 0; i < 100; ++i) {
        xcb_unmap_window(connection, window);
        xcb_map_window(connection, window);
        screen.sync();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    desk.activate(blue);
    EXPECT_TRUE(eventually([&] { return desk.isHidden(pink); }));

    const auto isGone = [&] {
        return eventually([&] {
            return screen.picture({210, 210, 150, 60}).shareOf(0x506070) == 1;
        });
    };
    constexpr std::uint32_t iconic = 3;
    screen.ask(window, "WM_CHANGE_STATE", iconic);
    EXPECT_TRUE(isGone()) << "with its window the cover goes";
    desk.activate(pink);
    EXPECT_TRUE(eventually([&] { return desk.isClear(pink); }));
    desk.activate(blue);
    EXPECT_TRUE(eventually([&] { return desk.isHidden(pink); }));
    pink.process->kill();
    EXPECT_TRUE(isGone());
}

TEST(Cover, HoldsInFullScreenAndOnOtherDesktops) {
    CoverDesk desk;
    auto& pink = desk.addApp("pink", 0xff00ff, 0xff00f0, {{200, 200, 500, 300}});
    Screen& screen = desk.screen();
    const auto window = pink.windows[0];
    const auto isOn = [&](std::uint32_t desktop) {
        return screen.cardinal(screen.root(), "_NET_CURRENT_DESKTOP") == desktop;
    };
    const auto staysHidden = [&] {
        return stays([&] { return desk.isHidden(pink); }, std::chrono::milliseconds(700));
    };
    const auto shows = [&](Area area) { return screen.picture(area).shareOf(0x506070) < 0.5; };
    desk.start();
    desk.activate(pink);
    ASSERT_TRUE(desk.lock(pink));

    const auto fullScreen = screen.atom("_NET_WM_STATE_FULLSCREEN");
    screen.ask(window, "_NET_WM_STATE", 1, fullScreen);
    // The server shows the larger window immediately; the cover follows after the event.
    EXPECT_TRUE(
        eventually([&] { return desk.areaOf(pink) == leftDisplay && desk.isHidden(pink); }));
    EXPECT_TRUE(staysHidden());
    EXPECT_TRUE(shows(leftDisplay));
    screen.ask(window, "_NET_WM_STATE", 0, fullScreen);
    const Area small{200, 200, 500, 300};
    EXPECT_TRUE(eventually([&] { return !shows({1200, 700, 500, 300}) && desk.isHidden(pink); }));
    EXPECT_TRUE(staysHidden());

    // The cover follows its window to another desktop and back.
    screen.ask(window, "_NET_WM_DESKTOP", 1);
    EXPECT_TRUE(eventually([&] { return !shows(small); }));
    for (const std::uint32_t desktop : {1U, 0U, 1U}) {
        screen.ask(screen.root(), "_NET_CURRENT_DESKTOP", desktop);
        // The window is visible until the server has reported its return.
        EXPECT_TRUE(eventually([&] {
            return isOn(desktop) && shows(small) == (desktop == 1) && desk.isHidden(pink);
        }));
        EXPECT_TRUE(staysHidden());
    }
}

TEST(Cover, LeavesNothingToReadOfOrdinaryPrograms) {
    CoverDesk desk;
    const std::string text =
        "The quarterly figures are confidential\nuntil the board has met on Thursday.\n"
        "Please do not forward this message.\n";
    const auto isReadable = [&](Area area) {
        return contains(readWords(desk.screen().picture(area)), "confidential thursday");
    };
    // Words of the badge are allowed.
    const auto reads = [&](Area area) {
        for (const auto& word : readWords(desk.screen().picture(area))) {
            if (word.size() >= 4 && text.find(word) != std::string::npos) return true;
        }
        return false;
    };
    const auto bringForward = [&](xcb_window_t window) {
        desk.screen().activate(window);
        return eventually([&] { return desk.screen().activeWindow() == window; });
    };
    // A terminal whose text the server draws, and an editor whose toolkit draws its own text.
    const Area letter = desk.desktop.showText(text, 14, 300, 200, false, "Letter");
    const auto file = desk.desktop.folder() / "Memo";
    writeText(file, text);
    desk.desktop.start({"mousepad", "--disable-server", file.string()}, "mousepad");
    std::optional<xcb_window_t> editor;
    ASSERT_TRUE(eventually([&] { return (editor = desk.screen().find("mousepad")).has_value(); }));
    const auto terminal = desk.screen().find("Letter");
    ASSERT_TRUE(terminal);
    const std::uint32_t place[] = {2200, 300};
    xcb_configure_window(desk.screen().connection(), *editor,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
    const auto memo = [&] { return desk.screen().areaOf(*editor); };
    ASSERT_TRUE(eventually([&] { return memo().x >= 2200 && isReadable(memo()); }));
    ASSERT_TRUE(isReadable(letter));

    desk.start({"debian-xterm"});
    EXPECT_TRUE(eventually([&] { return !reads(letter); }));
    EXPECT_TRUE(isReadable(memo()));
    ASSERT_TRUE(bringForward(*editor));
    desk.screen().press({XK_Super_L, XK_Alt_L, XK_l});
    EXPECT_TRUE(eventually([&] { return !reads(memo()); }));
    EXPECT_TRUE(contains(readWords(desk.screen().picture(memo())), "mousepad is locked"));
    EXPECT_FALSE(reads(letter));
    ASSERT_TRUE(bringForward(*terminal));
    EXPECT_TRUE(eventually([&] { return isReadable(letter); }));
    EXPECT_FALSE(reads(memo()));
}

}  // namespace
