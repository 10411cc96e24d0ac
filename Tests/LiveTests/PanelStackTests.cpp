#include "OrvelBlur/X11/PanelStack.h"

#include "BlurDesktop.h"
#include "Desktop/SampleWindow.h"

namespace {

struct PanelStackTest : BlurDesktopTest {
    ~PanelStackTest() override { PanelStack::shared().setYielding(false); }

    static constexpr Area middle{100, 100, 400, 300};

    bool eventuallyTop(Colour colour) { return eventuallyShows(200, 200, colour); }
    bool staysTop(Colour colour) {
        return stays([=, this] { return shows(200, 200, colour); });
    }
};

TEST_F(PanelStackTest, levelsDecideWhateverTheOrderOfShowing) {
    struct Level {
        int level;
        Colour colour;
    };
    std::vector<Level> order{
        {WindowLevel::normal, green}, {WindowLevel::toast, red}, {WindowLevel::lock, blue}};
    const auto byLevel = [](const Level& a, const Level& b) { return a.level < b.level; };
    do {
        std::map<int, std::unique_ptr<Panel>> panels;
        for (const auto& [level, colour] : order) {
            panels[level] = plain(middle, colour, level);
            show(*panels[level]);
        }
        EXPECT_TRUE(eventuallyTop(blue));
        // Order each panel to the front again, now that all exist.
        for (const auto& [level, colour] : order) show(*panels[level]);
        EXPECT_TRUE(eventuallyTop(blue));
        EXPECT_TRUE(staysTop(blue));
        panels[WindowLevel::lock]->orderOut();
        EXPECT_TRUE(eventuallyTop(red));
        panels[WindowLevel::toast]->orderOut();
        EXPECT_TRUE(eventuallyTop(green));
    } while (std::next_permutation(order.begin(), order.end(), byLevel));
}

TEST_F(PanelStackTest, nothingStaysOverALock) {
    const auto toast = plain({100, 100, 50, 50}, red);
    const auto lock = plain(middle, blue, WindowLevel::lock);
    show(*lock);
    show(*toast);
    ASSERT_TRUE(eventuallyTop(blue));
    const auto intruder = makeWindow(middle, green);
    EXPECT_TRUE(eventuallyTop(blue)) << "mapped";
    raise(intruder);
    EXPECT_TRUE(eventuallyTop(blue)) << "raised";
    configure(intruder, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
              {static_cast<std::uint32_t>(toast->windowNumber()), XCB_STACK_MODE_ABOVE});
    EXPECT_TRUE(eventuallyTop(blue)) << "between two panels";
    xcb_circulate_window(screen().connection(), XCB_CIRCULATE_RAISE_LOWEST, screen().root());
    screen().sync();
    EXPECT_TRUE(eventuallyTop(blue)) << "circulated";
    const auto outer = makeWindow({0, 0, 10, 10}, green);
    xcb_reparent_window(screen().connection(), intruder.id, outer.id, 0, 0);
    xcb_reparent_window(screen().connection(), intruder.id, screen().root(), 100, 100);
    screen().sync();
    EXPECT_TRUE(eventuallyTop(blue)) << "reparented";
    EXPECT_TRUE(staysTop(blue));

    lock->orderOut();
    EXPECT_TRUE(eventuallyTop(green));
    raise(intruder);
    EXPECT_TRUE(staysTop(green)) << "without a lock the desktop is left alone";
}

// A simultaneous change of another window must not hide that a window came to the top.
TEST_F(PanelStackTest, anIntruderInACrowdIsNoticedToo) {
    const auto still = makeWindow({600, 400, 50, 50}, red);
    const auto intruder = makeWindow(middle, green);
    const auto lock = plain(middle, blue, WindowLevel::lock);
    show(*lock);
    ASSERT_TRUE(eventuallyTop(blue));
    settled({0, 0, 1, 1});
    atomically([&] {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        const std::uint32_t x = 610;
        auto* const c = screen().connection();
        xcb_configure_window(c, intruder.id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_configure_window(c, still.id, XCB_CONFIG_WINDOW_X, &x);
    });
    EXPECT_TRUE(eventuallyTop(blue));

    // The panels' own restacking must not trigger another restacking.
    settled({0, 0, 1, 1});
    int told = 0;
    const auto watch = X11::shared().onEvent([&told](const auto& event) {
        told += (event.response_type & 0x7F) == XCB_CONFIGURE_NOTIFY;
    });
    PanelStack::shared().raise();
    EXPECT_TRUE(stays([&] { return told == 0; }));
}

TEST_F(PanelStackTest, yieldingLeavesTheTopToOthersUntilItEnds) {
    const auto backstop = plain(middle, red, WindowLevel::lock - 1);
    const auto lock = plain(middle, blue, WindowLevel::lock);
    show(*backstop);
    show(*lock);
    ASSERT_TRUE(eventuallyTop(blue));
    PanelStack::shared().setYielding(true);
    const auto locker = makeWindow(middle, green);
    EXPECT_TRUE(staysTop(green));
    show(*lock);
    const auto late = plain(middle, red, WindowLevel::lock);
    show(*late);
    EXPECT_TRUE(staysTop(green)) << "also what is shown meanwhile";
    late->orderOut();
    PanelStack::shared().setYielding(false);
    EXPECT_TRUE(eventuallyTop(blue));
    unmap(locker);
    EXPECT_TRUE(staysTop(blue));
}

TEST_F(PanelStackTest, aBlurOfTheScreenLeavesTheTopToALocker) {
    const auto blur = plain(middle, blue, WindowLevel::quickBlur);
    show(*blur);
    ASSERT_TRUE(eventuallyTop(blue));
    const SampleWindow locker(display(), whole, green, SampleWindow::Kind::locker);
    EXPECT_TRUE(eventuallyTop(green));
    EXPECT_TRUE(staysTop(green));
}

// The locker came up during the lock and was kept below; then the lock is handed off to it.
TEST_F(PanelStackTest, aLockerThatWasHeldDownComesUpOnceThePanelsYield) {
    const auto lock = blurring(middle, WindowLevel::lock);
    show(*lock);
    settled();
    SampleWindow locker(display(), middle, green, SampleWindow::Kind::locker);
    const auto keepsRaisingItself = [&] {
        stays([&] {
            locker.raiseIfObscured();
            return true;
        });
    };
    // Run long enough for the locker's picture to become part of the backdrop.
    keepsRaisingItself();
    PanelStack::shared().raise();
    keepsRaisingItself();
    const auto comesUp = [&] {
        return eventually([&] {
            locker.raiseIfObscured();
            return shows(200, 200, green) && screen().picture(middle).shareOf(green) == 1 &&
                   screen().mappedWindows().back() == locker.id();
        });
    };
    PanelStack::shared().setYielding(true);
    EXPECT_TRUE(comesUp());
    // The same after the lock was taken back and handed off again.
    PanelStack::shared().setYielding(false);
    EXPECT_TRUE(eventually([&] { return screen().mappedWindows().back() != locker.id(); }));
    keepsRaisingItself();
    PanelStack::shared().setYielding(true);
    EXPECT_TRUE(comesUp());
}

TEST_F(PanelStackTest, clicksReachItOrWhatLiesBelow) {
    SampleWindow below(display(), {100, 100, 200, 200}, green, SampleWindow::Kind::popup);
    auto panel = blurring({50, 50, 300, 300});
    int clicks = 0;
    panel->onClick = [&clicks] { ++clicks; };
    show(*panel);
    const auto click = [&] {
        screen().click(200, 200);
        settled({0, 0, 1, 1});
        return std::pair(clicks, below.clicks());
    };
    EXPECT_EQ(click(), std::pair(1, 0));
    for (std::uint8_t button = 2; button <= 5; ++button) {
        screen().buttonDown(button);
        screen().buttonUp(button);
    }
    settled({0, 0, 1, 1});
    EXPECT_EQ(clicks, 1) << "only the primary button clicks";
    panel->setIgnoresMouseEvents(true);
    EXPECT_EQ(click(), std::pair(1, 1));
    panel->setFrame({40, 40, 320, 320});
    panel->display();
    EXPECT_EQ(click(), std::pair(1, 2)) << "also after a change of size";
    panel->setIgnoresMouseEvents(false);
    EXPECT_EQ(click(), std::pair(2, 2));

    panel->onClick = [&] { panel.reset(); };
    screen().click(200, 200);
    EXPECT_TRUE(eventually([&] { return !panel; }));
}

}  // namespace
