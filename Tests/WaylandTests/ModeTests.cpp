#include "SwayDesk.h"

namespace DesktopTest {
namespace {

TEST(WaylandModes, BlurScreenHidesAllAndTakesTheKeysUntilEscape) {
    if (const auto obstacle = SwayDesk::obstacle()) GTEST_SKIP() << *obstacle;
    SwayDesk desk(2);
    auto& karvo = desk.startKarvo();
    const auto before = desk.typed();
    desk.open("karvo://blur/on");
    ASSERT_TRUE(eventually([&] { return desk.isHidden(); }));
    desk.keepPictures("blurred");
    desk.submit("x");
    EXPECT_TRUE(desk.isHidden());
    EXPECT_EQ(desk.typed(), before) << "what was typed reached the window behind";
    const auto endsByEscape = [&] {
        return eventually([&] {
            desk.press("Escape");
            return eventually([&] { return desk.isOpen(); }, std::chrono::seconds(3));
        });
    };
    EXPECT_TRUE(endsByEscape());
    EXPECT_TRUE(desk.typesIntoTerminal());
    // A lock comes up over it, and leaves it as it was.
    desk.open("karvo://blur/on");
    ASSERT_TRUE(eventually([&] { return desk.isHidden(); }));
    ASSERT_TRUE(desk.lock());
    desk.submit(SwayDesk::password);
    EXPECT_TRUE(eventually([&] { return !desk.isMarked(); }));
    EXPECT_TRUE(stays([&] { return desk.isHidden(); }, std::chrono::milliseconds(500)));
    // An output that comes is hidden as well.
    desk.sway("create_output");
    EXPECT_TRUE(eventually([&] { return desk.outputs().size() == 3 && desk.isHidden(); }));
    EXPECT_TRUE(endsByEscape());
    EXPECT_TRUE(karvo.isRunning());
}

}  // namespace
}  // namespace DesktopTest
