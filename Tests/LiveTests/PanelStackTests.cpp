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

TEST_F(PanelStackTest, theNewerOfOneLevelStandsInFront) {
    const auto first = plain(middle, red);
    const auto second = plain(middle, blue);
    show(*first);
    show(*second);
    EXPECT_TRUE(eventuallyTop(blue));
    show(*first);
    EXPECT_TRUE(eventuallyTop(red));
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

/// A window that raises itself whenever it is obscured, as screen lockers do.
struct Locker {
    explicit Locker(Area area)
        : connection(xcb_connect(nullptr, nullptr)), window(xcb_generate_id(connection)) {
        const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
        const std::uint32_t values[] = {0x00ff00, 1, XCB_EVENT_MASK_VISIBILITY_CHANGE};
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root,
                          static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                          static_cast<std::uint16_t>(area.width),
                          static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(connection, window);
        xcb_flush(connection);
    }
    ~Locker() { xcb_disconnect(connection); }
    Locker(const Locker&) = delete;
    Locker& operator=(const Locker&) = delete;

    void run() const {
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
            const auto& visibility = reinterpret_cast<const xcb_visibility_notify_event_t&>(*event);
            if ((event->response_type & 0x7F) != XCB_VISIBILITY_NOTIFY ||
                visibility.state == XCB_VISIBILITY_UNOBSCURED)
                continue;
            const std::uint32_t above = XCB_STACK_MODE_ABOVE;
            xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        }
        xcb_flush(connection);
    }

    xcb_connection_t* connection;
    xcb_window_t window;
};

TEST_F(PanelStackTest, aBlurOfTheScreenLeavesTheTopToALocker) {
    const auto blur = plain(middle, blue, WindowLevel::quickBlur);
    show(*blur);
    ASSERT_TRUE(eventuallyTop(blue));
    const Locker locker(whole);
    EXPECT_TRUE(eventuallyTop(green));
    EXPECT_TRUE(staysTop(green));
}

// The locker came up during the lock and was kept below; then the lock is handed off to it.
TEST_F(PanelStackTest, aLockerThatWasHeldDownComesUpOnceThePanelsYield) {
    const auto lock = blurring(middle, WindowLevel::lock);
    show(*lock);
    settled();
    const Locker locker(middle);
    // Run long enough for the locker's picture to become part of the backdrop.
    stays([&] {
        locker.run();
        return true;
    });
    PanelStack::shared().raise();
    stays([&] {
        locker.run();
        return true;
    });
    const auto comesUp = [&] {
        return eventually([&] {
            locker.run();
            return shows(200, 200, green) && screen().picture(middle).shareOf(green) == 1 &&
                   screen().mappedWindows().back() == locker.window;
        });
    };
    PanelStack::shared().setYielding(true);
    EXPECT_TRUE(comesUp());
    // The same after the lock was taken back and handed off again.
    PanelStack::shared().setYielding(false);
    EXPECT_TRUE(eventually([&] { return screen().mappedWindows().back() != locker.window; }));
    stays([&] {
        locker.run();
        return true;
    });
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
