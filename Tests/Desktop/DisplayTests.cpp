// Displays that appear, change and disappear during a lock.

#include "LockDesk.h"

namespace DesktopTest {
namespace {

const Display left{"Left", leftDisplay};
const Display right{"Right", rightDisplay};

Desktop::Options wideScreen(const std::vector<Display>& displays) {
    Desktop::Options options;
    options.width = 3840;
    options.displays = displays;
    return options;
}

/// Sets these displays and checks until `done` that `area`, which was not a display or a different
/// one before, shows nothing of the desktop.
bool changes(LockDesk& desk, const std::vector<Display>& displays, Area area,
             const std::function<bool()>& done) {
    desk.screen().setDisplays(displays);
    return eventually([&] {
        EXPECT_TRUE(desk.isCovered(area));
        return testing::Test::HasFailure() || done();
    });
}

TEST(LockDisplays, ADisplayThatComesIsCoveredBeforeItShowsAnything) {
    LockDesk desk(wideScreen({left}));
    desk.start();
    ASSERT_TRUE(desk.lockByShortcut());
    ASSERT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    EXPECT_TRUE(changes(desk, {left, right}, rightDisplay,
                        [&] { return desk.hasPill(rightDisplay) && desk.hasCard(leftDisplay); }));
    // When the display disappears, the card stays where it is.
    EXPECT_TRUE(changes(desk, {left}, rightDisplay,
                        [&] { return !desk.hasPill(rightDisplay) && desk.hasCard(leftDisplay); }));
    EXPECT_TRUE(desk.unlock());
}

TEST(LockDisplays, ADisplayThatGrowsOrMovesStaysCovered) {
    const Display small{"Right", {1920, 0, 1280, 720}};
    const Display moved{"Right", {1920, 0, 1600, 900}};
    LockDesk desk(wideScreen({left, small}));
    desk.start();
    ASSERT_TRUE(desk.lockByShortcut());
    ASSERT_TRUE(eventually([&] { return desk.hasPill(small.area); }));
    EXPECT_TRUE(
        changes(desk, {left, right}, rightDisplay, [&] { return desk.hasPill(rightDisplay); }));
    EXPECT_TRUE(changes(desk, {left, moved}, moved.area, [&] { return desk.hasPill(moved.area); }));
    EXPECT_TRUE(desk.hasCard(leftDisplay));
    EXPECT_TRUE(desk.unlock());
}

TEST(LockDisplays, AScreenThatGrowsShowsNothing) {
    LockDesk desk(wideScreen({left, right}));
    desk.start();
    desk.screen().resize(1920, 1080);
    desk.screen().setDisplays({left});
    ASSERT_TRUE(desk.lockUnseen());
    ASSERT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    desk.screen().resize(3840, 1080);
    EXPECT_TRUE(desk.isCovered(rightDisplay));
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_TRUE(desk.isCovered(rightDisplay));
    EXPECT_TRUE(
        changes(desk, {left, right}, rightDisplay, [&] { return desk.hasPill(rightDisplay); }));
    EXPECT_TRUE(desk.unlock());
}

TEST(LockDisplays, TheCardMovesWhenItsDisplayGoes) {
    LockDesk desk(wideScreen({left, right}));
    desk.start();
    desk.screen().movePointer(2400, 900);
    ASSERT_TRUE(desk.lockByShortcut());
    ASSERT_TRUE(desk.cardSays(rightDisplay, "enter your password"));
    EXPECT_TRUE(changes(desk, {left}, leftDisplay, [&] { return desk.hasCard(leftDisplay); }));
    ASSERT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    // When the display returns, the card does not move back.
    EXPECT_TRUE(changes(desk, {left, right}, rightDisplay,
                        [&] { return desk.hasPill(rightDisplay) && desk.hasCard(leftDisplay); }));
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.cardSays(leftDisplay, "incorrect password"));
    EXPECT_TRUE(desk.unlock());
}

}  // namespace
}  // namespace DesktopTest
