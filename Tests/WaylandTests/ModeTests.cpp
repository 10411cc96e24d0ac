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

TEST(WaylandShortcuts, AreBoundWithoutReplacingTheOwnersAndGoWithTheProgram) {
    if (const auto obstacle = SwayDesk::obstacle()) GTEST_SKIP() << *obstacle;
    SwayDesk desk;
    const auto own = (desk.folder() / "own").string();
    desk.addToConfig("set $key Ctrl\nbindsym $key+mod1+k exec touch " + own +
                     "\nmode other {\nbindsym x nop\n}");
    // Ctrl+Option+K is the owner's, Ctrl+Option+B is free.
    desk.setSettings(R"({"shortcut.quickBlur": "40:6:K", "shortcut.focusBlur": ""})");
    auto& karvo = desk.startKarvo();
    desk.chord("k");
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(own); }));
    EXPECT_TRUE(desk.isOpen());
    karvo.kill();

    desk.setSettings(R"({"shortcut.quickBlur": "11:6:B"})");
    auto& again = desk.startKarvo();
    const auto blurs = [&] {
        desk.chord("b");
        return eventually([&] { return desk.isHidden(); }, std::chrono::seconds(3));
    };
    const auto ends = [&] {
        return eventually([&] {
            desk.press("Escape");
            return eventually([&] { return desk.isOpen(); }, std::chrono::seconds(3));
        });
    };
    EXPECT_TRUE(blurs());
    EXPECT_TRUE(ends());
    desk.sway("reload");
    EXPECT_TRUE(eventually(blurs)) << "a reload removes what was bound meanwhile";
    EXPECT_TRUE(ends());
    desk.sway("mode other");
    again.signal(SIGTERM);
    EXPECT_TRUE(again.waitForExit());
    desk.sway("mode default");
    EXPECT_THROW(desk.sway("unbindsym Ctrl+Mod1+b"), std::runtime_error) << "left behind";
}

/// A desk whose terminal is locked by Ctrl+Alt+K, or is private.
struct WaylandCovers : testing::Test {
    void SetUp() override {
        if (const auto obstacle = SwayDesk::obstacle()) GTEST_SKIP() << *obstacle;
        desk = std::make_unique<SwayDesk>();
    }
    bool showsTerminal() {
        return desk->picture("HEADLESS-1").shareOf(SwayDesk::terminal, 2) > 0.5;
    }
    bool hidesTerminal() {
        return eventually(
            [&] { return desk->picture("HEADLESS-1").shareOf(SwayDesk::terminal, 2) == 0; });
    }

    std::unique_ptr<SwayDesk> desk;
};

TEST_F(WaylandCovers, HideALockedAppUntilItsPasswordAndLoseNoWindow) {
    desk->setSettings(R"({"shortcut.lockApp": "40:6:K"})");
    auto& karvo = desk->startKarvo();
    desk->chord("k");
    ASSERT_TRUE(hidesTerminal());
    const auto before = desk->typed();
    desk->submit("x");
    EXPECT_EQ(desk->typed(), before);
    // Whoever asks for it gets the card.
    desk->sway("scratchpad show");
    EXPECT_TRUE(hidesTerminal());
    desk->keepPictures("card");
    desk->submit("wrong");
    EXPECT_TRUE(stays([&] { return !showsTerminal(); }, std::chrono::seconds(1)));
    EXPECT_EQ(desk->typed(), before);
    desk->submit(SwayDesk::password);
    EXPECT_TRUE(eventually([&] { return showsTerminal(); }));
    EXPECT_TRUE(desk->typesIntoTerminal());

    // What a killed program has hidden comes back with the next one.
    desk->chord("k");
    ASSERT_TRUE(hidesTerminal());
    karvo.kill();
    EXPECT_FALSE(showsTerminal());
    desk->startKarvo();
    EXPECT_TRUE(eventually([&] { return showsTerminal(); }));
}

TEST_F(WaylandCovers, HideTheNewWindowsOfALockedApp) {
    desk->setSettings(R"({"shortcut.lockApp": "40:6:K"})");
    desk->startKarvo();
    desk->sway("kill");
    const auto socket = (desk->folder() / "socket").string();
    desk->start({"foot", "-s" + socket, "-c/dev/null", "-ocolors.background=20a060"}, "server");
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(socket); }));
    const auto open = [&](const std::string& title) {
        desk->start({"footclient", "--server-socket=" + socket, "--title=" + title, "cat"}, title);
        return eventually([&] {
            try {
                desk->sway("[title=" + title + "] nop");
                return true;
            } catch (const std::runtime_error&) {
                return false;  // no such window
            }
        });
    };
    ASSERT_TRUE(open("first"));
    EXPECT_TRUE(eventually([&] { return showsTerminal(); }));
    desk->chord("k");
    ASSERT_TRUE(hidesTerminal());
    ASSERT_TRUE(open("second"));
    EXPECT_TRUE(hidesTerminal());
    desk->sway("scratchpad show");
    EXPECT_TRUE(hidesTerminal());
    desk->submit(SwayDesk::password);
    EXPECT_TRUE(eventually([&] { return desk->isOpen(); }));
}

TEST_F(WaylandCovers, HideAPrivateAppWhileAnotherIsInUse) {
    desk->setSettings(R"({"privateApps": ["foot"]})");
    auto& karvo = desk->startKarvo();
    EXPECT_TRUE(stays([&] { return showsTerminal(); }, std::chrono::seconds(1))) << "it is in use";
    desk->open({});
    ASSERT_TRUE(hidesTerminal()) << "the settings are in use";
    desk->sway("scratchpad show");
    EXPECT_TRUE(eventually([&] { return showsTerminal(); }));
    desk->sway("[app_id=com.brindlewick.karvo] focus");
    ASSERT_TRUE(hidesTerminal());
    karvo.signal(SIGTERM);
    EXPECT_TRUE(karvo.waitForExit());
    EXPECT_TRUE(eventually([&] { return showsTerminal(); }));
}

}  // namespace
}  // namespace DesktopTest
