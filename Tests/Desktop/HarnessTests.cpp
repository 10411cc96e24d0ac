// Tests of the harness itself. If one of these fails, the results of the other desktop tests mean
// nothing.

#include "Desktop.h"

namespace DesktopTest {
namespace {

class HarnessInput : public testing::TestWithParam<bool> {};

TEST_P(HarnessInput, KeysAndClicksReachTheWindowThatListens) {
    Desktop::Options options;
    options.realDevices = GetParam();
    Desktop desktop(options);
    auto& screen = desktop.screen();
    EXPECT_EQ(screen.bounds(), (Area{0, 0, options.width, options.height}));
    auto& window = desktop.addWindow({300, 300, 500, 300});
    screen.click(500, 450);
    ASSERT_TRUE(eventually([&] { return window.hasFocus(); }));
    EXPECT_TRUE(eventually([&] { return window.clicks() == 1; }));
    screen.type("aB!");
    // Shift counts as a key press too.
    EXPECT_TRUE(eventually([&] { return window.keyPresses() == 5; }));

    ASSERT_FALSE(screen.keyboardIsGrabbed());
    auto& menu = desktop.addWindow({600, 400, 100, 100}, 0xff00ff, SampleWindow::Kind::popup);
    ASSERT_TRUE(menu.grab());
    EXPECT_TRUE(screen.keyboardIsGrabbed());
    screen.type("x");
    EXPECT_TRUE(eventually([&] { return menu.keyPresses() == 1; }));
    EXPECT_EQ(window.keyPresses(), 5);
    menu.ungrab();

    EXPECT_EQ(screen.held(), "");
    for (const int keyboard : {1, 0}) {
        if (options.realDevices) desktop.devices().useKeyboard(keyboard);
        screen.keyDown(XK_a);
        EXPECT_NE(screen.held(), "");
        screen.keyUp(XK_a);
        EXPECT_EQ(screen.held(), "");
    }
    EXPECT_TRUE(eventually([&] { return window.keyPresses() == 7; }));
}

INSTANTIATE_TEST_SUITE_P(All, HarnessInput, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "RealDevices" : "XTest"; });

TEST(Harness, EndsWhatDetachedItself) {
    std::filesystem::path folder;
    const std::filesystem::path sleeper = std::filesystem::canonical("/usr/bin/sleep");
    {
        Desktop desktop;
        folder = desktop.folder();
        desktop.start({"setsid", "-f", "sleep", "100000"}, "detached");
        ASSERT_TRUE(eventually([&] { return descendantsRunning(sleeper).size() == 1; }));
    }
    EXPECT_TRUE(descendantsRunning(sleeper).empty());
    EXPECT_FALSE(std::filesystem::exists(folder));
}

}  // namespace
}  // namespace DesktopTest
