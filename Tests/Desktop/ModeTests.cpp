// Blur Screen and Focus Blur and their automatic triggers, from the user's point of view.

#include "CoverDesk.h"
#include "LockDesk.h"
#include "RequestCounter.h"

namespace {

using std::chrono::milliseconds;

// Control+B and Control+F.
constexpr auto shortcuts = R"("shortcut.quickBlur": "11:4:B", "shortcut.focusBlur": "3:4:F")";

struct BlurDesk : LockDesk {
    explicit BlurDesk(const std::string& settings = "",
                      const Desktop::Options& options = Desktop::twoDisplays())
        : LockDesk(options) {
        setSettings("{" + std::string(shortcuts) + settings + "}");
        start();
        remember();
    }
    void pressShortcut() { screen().press({XK_Control_L, XK_b}); }
    bool becomesCovered() {
        return eventually([this] { return isCovered(); });
    }
    bool becomesOpen() {
        return eventually([this] { return isOpen(); });
    }
};

TEST(BlurScreen, TheShortcutHidesEveryDisplayAndEscapeGivesThemBack) {
    BlurDesk desk;
    const int clicks = desk.window().clicks();
    desk.pressShortcut();
    ASSERT_TRUE(desk.becomesCovered());
    desk.desktop.keepPicture("blurred");
    // Input must not reach the hidden windows.
    const int keys = desk.window().keyPresses();
    desk.screen().type("abc");
    desk.screen().click(300, 520);
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_EQ(desk.window().keyPresses(), keys);
    EXPECT_EQ(desk.window().clicks(), clicks);
    // A window that appears later is hidden too.
    {
        SampleWindow popup(desk.desktop.display(), {200, 300, 600, 500}, 0xfe01fe,
                           SampleWindow::Kind::popup);
        popup.map();
        const auto shown = [&] { return desk.screen().picture().shareOf(0xfe01fe); };
        EXPECT_TRUE(eventually([&] { return shown() == 0; }));
        EXPECT_TRUE(stays([&] { return shown() == 0; }, milliseconds(500)));
    }
    desk.screen().press({XK_Escape});
    EXPECT_TRUE(desk.becomesOpen());
    EXPECT_TRUE(eventually([&] { return desk.window().hasFocus(); }));
    EXPECT_TRUE(desk.typesIntoWindow());
}

TEST(BlurScreen, StandsUnderALockAndAfterIt) {
    BlurDesk desk("", LockDesk::oneDisplay());
    auto& screen = desk.screen();
    desk.pressShortcut();
    ASSERT_TRUE(desk.becomesCovered());
    screen.press({XK_Super_L, XK_l});
    ASSERT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    desk.submit(Desktop::password);
    ASSERT_TRUE(eventually([&] { return !desk.hasCard(onlyDisplay); }));
    EXPECT_TRUE(desk.staysCovered()) << "unlocked, but still blurred";
    screen.press({XK_Escape});
    ASSERT_TRUE(desk.becomesOpen());
    EXPECT_TRUE(eventually([&] { return desk.window().hasFocus(); }));

    // If Blur Screen starts and ends during a lock, the end of the lock restores the active window.
    ASSERT_TRUE(desk.lockByShortcut());
    desk.karvo().open("karvo://blur/on");
    ASSERT_TRUE(desk.takesPassword());
    desk.karvo().open("karvo://blur/off");
    EXPECT_TRUE(desk.staysCovered());
    ASSERT_TRUE(desk.unlock());
    EXPECT_TRUE(eventually([&] { return desk.window().hasFocus(); }));
    EXPECT_TRUE(desk.typesIntoWindow());
}

TEST(Idle, BlursThenLocksUnlessTheDisplayIsKeptAwake) {
    BlurDesk desk(R"(, "idleBlurAfter": 4, "idleLockAfter": 10)", LockDesk::oneDisplay());
    auto& screen = desk.screen();
    screen.movePointer(700, 600);
    desk.remember();
    ASSERT_TRUE(desk.becomesCovered());
    EXPECT_FALSE(desk.hasCard(onlyDisplay));
    screen.movePointer(702, 600);
    ASSERT_TRUE(desk.becomesOpen()) << "any input clears it";
    ASSERT_TRUE(desk.becomesCovered());
    ASSERT_TRUE(desk.cardSays(onlyDisplay, "enter your password")) << "the lock comes over it";
    desk.submit(Desktop::password);
    EXPECT_TRUE(desk.becomesOpen());

    // An inhibitor holds off both; after it ends, the full idle time has to pass again.
    {
        const auto film = desk.desktop.logind().inhibit("idle");
        screen.movePointer(700, 600);
        EXPECT_TRUE(stays([&] { return desk.isOpen(); }, milliseconds(6000)));
    }
    EXPECT_TRUE(stays([&] { return desk.isOpen(); }, milliseconds(900)));
    EXPECT_TRUE(desk.becomesCovered());
}

TEST(FocusBlur, LeavesTheWindowInUseClearOnEveryDisplay) {
    CoverDesk desk;
    auto& pink = desk.pink();
    auto& blue = desk.blue();
    auto& green = desk.addApp("green", 0x00ff00, 0x00ff88, {{2200, 300, 600, 400}});
    desk.activate(pink, 1);
    desk.start();
    desk.karvo().open("karvo://focus/on");
    ASSERT_TRUE(eventually([&] { return desk.isHidden(blue) && desk.isHidden(green); }));
    EXPECT_TRUE(desk.isClear(pink, 1));
    EXPECT_EQ(desk.shown(pink, {210, 210, 180, 200}), 0) << "its other window is not in use";
    desk.desktop.keepPicture("focus");

    // The focus moves to the other display, and then back by a click through the blur.
    desk.activate(green);
    EXPECT_TRUE(eventually([&] { return desk.isHidden(pink) && desk.isClear(green); }));
    const Area area = desk.areaOf(blue);
    desk.screen().click(area.x + 30, area.y + 30);
    EXPECT_TRUE(eventually([&] { return desk.isClear(blue) && desk.isHidden(green); }));
    EXPECT_EQ(desk.screen().activeWindow(), blue.windows[0]);

    // While nothing changes, the program sends no requests.
    RequestCounter counter(desk.desktop.display(), desk.karvo().process().pid());
    ASSERT_TRUE(counter.waitForRest());
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(counter.describe(counter.take()), "");

    desk.karvo().open("karvo://focus/off");
    EXPECT_TRUE(eventually(
        [&] { return desk.isClear(pink, 1) && desk.isClear(green) && desk.isClear(blue); }));
}

}  // namespace
