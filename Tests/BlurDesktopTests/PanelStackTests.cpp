#include <algorithm>

#include "OrvelBlur/Linux/PanelStack.h"

#include "BlurDesktop.h"

using namespace OrvelBlur;

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
        // Once more, now that all of them are there.
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

// What else moves must not hide from it that something came to the top.
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

    // It comes to rest: its own raising makes it raise no more.
    settled({0, 0, 1, 1});
    int told = 0;
    const auto watch = OrvelSystem::X11::shared().onEvent([&told](const auto& event) {
        told += (event.response_type & 0x7F) == XCB_CONFIGURE_NOTIFY;
    });
    PanelStack::shared().raise();
    EXPECT_TRUE(stays([&] { return told == 0; }));
}

TEST_F(PanelStackTest, yieldingLeavesTheTopToOthersUntilItEnds) {
    const auto shield = plain(middle, red, WindowLevel::lock - 1);
    const auto lock = plain(middle, blue, WindowLevel::lock);
    show(*shield);
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

}  // namespace
