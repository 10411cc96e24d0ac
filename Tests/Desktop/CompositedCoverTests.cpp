// Covers under a compositing manager that draws them in front of all managed windows.

#include "CoverDesk.h"
#include "RequestCounter.h"

namespace DesktopTest {
namespace {

class CompositedCover : public testing::TestWithParam<std::string> {};

TEST_P(CompositedCover, LeavesWindowsInFrontVisible) {
    const auto& manager = GetParam();
    if (!std::filesystem::exists("/usr/bin/" + manager))
        GTEST_SKIP() << manager << " is not installed";
    auto options = Desktop::twoDisplays();
    options.windowManager = false;
    CoverDesk desk(options);
    Screen& screen = desk.screen();
    desk.desktop.start({manager}, manager);
    ASSERT_TRUE(eventually([&] {
        return screen.cardinal(screen.root(), "_NET_SUPPORTING_WM_CHECK") &&
               screen.hasOwner("_NET_WM_CM_S0");
    }));
    auto& pink = desk.pink();
    auto& lid = desk.addApp("lid", 0x00ff00, 0x00ff88, {{600, 300, 500, 300}});
    desk.start();
    desk.activate(pink, 1);
    ASSERT_TRUE(desk.lock(pink));
    desk.activate(lid);
    // The window is in front of parts of both covers and of the badge, which would hide a quarter
    // of it or more. metacity draws the shadows of the covers on up to a tenth of it.
    const auto isInFront = [&] { return desk.shown(lid, desk.areaOf(lid)) > 0.85; };
    EXPECT_TRUE(eventually(isInFront));
    desk.desktop.keepPicture("in-front");
    const auto move = [&](std::uint32_t x, std::uint32_t y) {
        const std::uint32_t place[] = {x, y};
        xcb_configure_window(screen.connection(), lid.windows[0],
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
        screen.sync();
    };
    for (const std::uint32_t x : {300U, 500U, 450U}) {
        move(x, x - 50);
        EXPECT_TRUE(eventually(isInFront)) << x;
        EXPECT_TRUE(desk.isHidden(pink)) << x;
    }
    // The manager keeps the covers in front of the window in the stack too. Karvo does not fight
    // it.
    RequestCounter counter(desk.desktop.display(), desk.karvo().process().pid());
    EXPECT_TRUE(counter.waitForRest());
    // A click on the window is none on the cover.
    const auto area = desk.areaOf(lid);
    screen.click(area.x + 50, area.y + 50);
    EXPECT_TRUE(stays([&] { return screen.focusedWindow() == lid.windows[0]; },
                      std::chrono::milliseconds(700)));

    // Its badge takes the keyboard, so metacity may not report it as active.
    screen.activate(pink.windows[1]);
    const Area middle{450, 430, 300, 100};
    EXPECT_TRUE(eventually([&] { return desk.shown(lid, middle) == 0; })) << "behind again";
    EXPECT_TRUE(desk.isHidden(pink));
    desk.activate(lid);
    EXPECT_TRUE(eventually(isInFront));
    lid.process->kill();
    EXPECT_TRUE(eventually([&] { return desk.isHidden(lid); }));
    EXPECT_TRUE(desk.isHidden(pink));
}

// The tests need no package but metacity, so the other runs only where it is installed.
INSTANTIATE_TEST_SUITE_P(Under, CompositedCover, testing::Values("metacity", "kwin_x11"),
                         [](const auto& manager) { return manager.param; });

}  // namespace
}  // namespace DesktopTest
