// Where the program cannot work it prints one sentence and exits; elsewhere it starts.

#include <sys/resource.h>

#include "LockDesk.h"

namespace {

Desktop::Options withoutBuses() {
    auto options = LockDesk::oneDisplay();
    options.sessionBus = options.systemBus = options.logind = false;
    return options;
}

/// Starts the program with these changes to the environment; an empty value removes a variable.
Finished start(const Desktop& desktop, const Environment& changes) {
    Environment environment = desktop.environmentWithPam();
    for (const auto& [name, value] : changes) {
        environment.erase(name);
        if (!value.empty()) environment[name] = value;
    }
    return run({KARVO_BINARY}, environment);
}

void expectOneSentence(const std::string& output) {
    EXPECT_TRUE(output.starts_with("Karvo ")) << output;
    EXPECT_TRUE(output.ends_with(".\n")) << output;
    EXPECT_EQ(std::ranges::count(output, '\n'), 1) << output;
}

TEST(Start, WithoutAnX11SessionItSaysSo) {
    LockDesk desk;
    struct Case {
        const char* name;
        Environment changes;
        const char* expected;
    };
    const Case cases[] = {
        {"nothing", {{"DISPLAY", ""}}, "X11"},
        {"Wayland", {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", "wayland-0"}}, "Wayland"},
        {"no server", {{"DISPLAY", ":4711"}}, ":4711"},
    };
    for (const auto& [name, changes, expected] : cases) {
        SCOPED_TRACE(name);
        const auto [status, output] = start(desk.desktop, changes);
        EXPECT_EQ(status, 1);
        expectOneSentence(output);
        EXPECT_NE(output.find(expected), std::string::npos) << output;
    }
}

TEST(Start, NoCoreFileHoldsWhatIsTyped) {
    LockDesk desk;
    rlimit limit{1, 1};
    ASSERT_EQ(prlimit(desk.start().process().pid(), RLIMIT_CORE, nullptr, &limit), 0);
    EXPECT_EQ(limit.rlim_cur, 0U);
    EXPECT_EQ(limit.rlim_max, 0U) << "permanently";
}

TEST(Start, ASecondOneLeavesTheFirstAlone) {
    LockDesk desk;
    auto& karvo = desk.start();
    EXPECT_EQ(karvo.startAgain({"--login-item"}).waitForExit(), 0);
    EXPECT_FALSE(eventually([&] { return desk.screen().find("Karvo Settings").has_value(); },
                            std::chrono::milliseconds(700)));
    EXPECT_EQ(karvo.startAgain().waitForExit(), 0);
    EXPECT_TRUE(karvo.process().isRunning());
    EXPECT_EQ(karvo.apps().size(), 1U);
    // A second start does not count as a crash either.
    EXPECT_EQ(karvo.guards().size(), 1U);
    // A second start opens Settings, for a user who sees no icon.
    auto& screen = desk.screen();
    EXPECT_TRUE(eventually([&] {
        const auto active = screen.activeWindow();
        return active != 0 && screen.textProperty(active, "_NET_WM_NAME") == "Karvo Settings";
    }));
    ASSERT_TRUE(desk.lockToCard());
    EXPECT_TRUE(desk.unlock());
}

TEST(Start, WithoutAnyBusItLocksAndASecondOneSaysSo) {
    LockDesk desk(withoutBuses());
    auto& karvo = desk.start();
    ASSERT_TRUE(eventually([&] { return karvo.guards().size() == 1; }));
    // Without a bus, only trying tells whether the shortcut is registered.
    ASSERT_TRUE(eventually([&] {
        desk.screen().press({XK_Super_L, XK_l});
        return eventually([&] { return desk.isCovered(); }, std::chrono::seconds(2));
    }));
    EXPECT_TRUE(desk.takesPassword());

    auto environment = desk.desktop.environmentWithPam();
    const auto second = run({karvo.binary().string()}, environment);
    EXPECT_EQ(second.status, 1);
    expectOneSentence(second.output);
    EXPECT_TRUE(karvo.process().isRunning());

    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "incorrect password"));
    EXPECT_TRUE(desk.unlock() && desk.typesIntoWindow());
}

}  // namespace
