// Covers under a compositing manager that draws them in front of all managed windows.

#include "CoverDesk.h"
#include "RequestCounter.h"

namespace DesktopTest {
namespace {

TEST(CompositedCover, LeavesWindowsInFrontVisible) {
    if (!std::filesystem::exists("/usr/bin/metacity")) GTEST_SKIP() << "metacity is not installed";
    auto options = Desktop::twoDisplays();
    options.windowManager = false;
    CoverDesk desk(options);
    Screen& screen = desk.screen();
    desk.desktop.start({"metacity"}, "metacity");
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
    // metacity keeps the covers in front of the window in the stack too. Karvo does not fight it.
    RequestCounter counter(desk.desktop.display(), desk.karvo().process().pid());
    EXPECT_TRUE(counter.waitForRest());
    // A click on the window is none on the cover.
    const auto area = desk.areaOf(lid);
    screen.click(area.x + 50, area.y + 50);
    EXPECT_TRUE(stays([&] { return screen.focusedWindow() == lid.windows[0]; },
                      std::chrono::milliseconds(700)));

    lid.process->kill();
    EXPECT_TRUE(eventually([&] { return desk.isHidden(lid); }));
    EXPECT_TRUE(desk.isHidden(pink));
}

}  // namespace
}  // namespace DesktopTest
