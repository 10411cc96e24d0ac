#include <xcb/xtest.h>

#include "Desktop/Eventually.h"
#include "Desktop/SampleWindow.h"
#include "Desktop/XServer.h"
#include "MirrorDesktop.h"

namespace {

/// Runs with and without a window manager.
class BothWays : public MirrorTest, public testing::WithParamInterface<bool> {
  protected:
    BothWays() {
        if (GetParam()) startWindowManager();
    }
};
INSTANTIATE_TEST_SUITE_P(WindowManager, BothWays, testing::Bool());

TEST_P(BothWays, FollowsTwoHundredWindowsThroughRandomChanges) {
    auto* const c = screen().connection();
    std::mt19937 random(5);
    std::vector<xcb_window_t> windows;
    const auto any = [&](std::uint32_t below) {
        return static_cast<std::uint32_t>(random()) % below;
    };
    for (int round = 0; round < 8; ++round) {
        for (int step = 0; step < 150; ++step) {
            if (windows.size() < 200 && (any(2) == 0 || windows.empty())) {
                windows.push_back(make({static_cast<int>(any(700)), static_cast<int>(any(500)),
                                        static_cast<int>(20 + any(200)), 40},
                                       any(3) == 0));
                xcb_map_window(c, windows.back());
                continue;
            }
            const auto window = windows[any(static_cast<std::uint32_t>(windows.size()))];
            const auto other = windows[any(static_cast<std::uint32_t>(windows.size()))];
            const std::uint32_t place[] = {any(700), any(500), 20 + any(300), 20 + any(300)};
            const std::uint32_t order[] = {other, any(2)};
            switch (any(7)) {
                case 0:
                    xcb_destroy_window(c, window);
                    std::erase(windows, window);
                    break;
                case 1:
                    xcb_unmap_window(c, window);
                    break;
                case 2:
                    xcb_map_window(c, window);
                    break;
                case 3:
                    xcb_configure_window(c, window, 0xF, place);
                    break;
                case 4:
                    if (window != other)
                        xcb_configure_window(
                            c, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                            order);
                    break;
                case 5:
                    xcb_circulate_window(c, static_cast<std::uint8_t>(any(2)), screen().root());
                    break;
                default:
                    for (int i = 0; i < 50; ++i) {
                        xcb_map_window(c, window);
                        xcb_unmap_window(c, window);
                    }
            }
        }
        screen().sync();
        ASSERT_TRUE(eventually([this] { return mirrorAgrees(); })) << "round " << round;
    }
    for (const auto window : windows) {
        const auto known = mirrored(window);
        EXPECT_EQ(known ? known->ownerPID : getpid(), getpid());
    }
    // A mirror that starts now finds the same windows.
    WindowServerMirror late;
    EXPECT_TRUE(eventually([&] { return late.windows() == mirror.windows(); }));
}

TEST_P(BothWays, KnowsTheOwnerOfAWindowWithoutItsProperties) {
    const Process program({"xterm", "-geometry", "20x4+300+200"}, environment());
    std::optional<xcb_window_t> theirs;
    ASSERT_TRUE(eventually([&] { return (theirs = screen().find("xterm")).has_value(); }));
    const auto mine = make({10, 10, 100, 100});
    setProperty(mine, "_NET_WM_PID", XCB_ATOM_CARDINAL, {1});
    map(mine);
    const auto owner = [&](xcb_window_t window) {
        const auto known = mirrored(window);
        return known ? known->ownerPID : -1;
    };
    EXPECT_TRUE(eventually([&] { return owner(*theirs) == program.pid(); }));
    EXPECT_TRUE(eventually([&] { return owner(mine) == getpid(); }));

    // The level property counts only on this program's own panels.
    const auto panel = make({50, 50, 100, 100}, true);
    for (const auto window : {panel, screen().frameOf(*theirs)})
        setProperty(window, WindowServerMirror::levelProperty, XCB_ATOM_CARDINAL, {1000});
    map(panel);
    EXPECT_TRUE(eventually([&] { return mirrored(panel) && mirrored(panel)->layer == 1000; }));
    EXPECT_EQ(mirrored(*theirs)->layer, 0);
    EXPECT_EQ(owner(*theirs), program.pid());
}

TEST_F(MirrorTest, LayersAndAbsenceFollowTheWindowManager) {
    startWindowManager();
    constexpr std::uint32_t add = 1, remove = 0;
    const auto window = make({100, 100, 200, 150});
    const auto popup = make({300, 300, 50, 50}, true);
    const auto dock = make({0, 580, 800, 20});
    const auto desktop = make({0, 0, 800, 600});
    const auto type = [&](xcb_window_t of, std::string_view name) {
        setProperty(of, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {screen().atom(name)});
    };
    type(dock, "_NET_WM_WINDOW_TYPE_DOCK");
    type(desktop, "_NET_WM_WINDOW_TYPE_DESKTOP");
    for (const auto each : {window, popup, dock, desktop}) map(each);

    const auto is = [&](xcb_window_t of, auto&& holds) {
        return eventually([&] {
            const auto known = mirrored(of);
            return known && known->ownerPID == getpid() && holds(*known);
        });
    };
    const auto isOn = [&](xcb_window_t of, std::int64_t layer) {
        return is(of, [layer](const auto& known) { return known.layer == layer; });
    };
    const auto isGone = [&] { return eventually([&] { return !mirrored(window); }); };
    const auto state = [&](std::uint32_t change, std::string_view name) {
        screen().ask(window, "_NET_WM_STATE", change, screen().atom(name));
    };
    EXPECT_TRUE(isOn(window, 0));
    EXPECT_TRUE(isOn(popup, 101));
    EXPECT_TRUE(isOn(dock, 20));
    EXPECT_TRUE(is(desktop, [](const auto& known) { return known.layer < -1000; }));

    state(add, "_NET_WM_STATE_ABOVE");
    EXPECT_TRUE(isOn(window, 3));
    state(remove, "_NET_WM_STATE_ABOVE");
    EXPECT_TRUE(isOn(window, 0));
    const Rect whole = mirrored(window)->bounds;
    EXPECT_GT(whole.height, 150) << "with the title bar";
    // A shaded window still shows its title, which may be confidential.
    state(add, "_NET_WM_STATE_SHADED");
    EXPECT_TRUE(is(window, [](const auto& known) { return known.bounds.height < 150; }));
    EXPECT_TRUE(
        stays([&] { return mirrored(window).has_value(); }, std::chrono::milliseconds(200)));
    state(remove, "_NET_WM_STATE_SHADED");
    EXPECT_TRUE(is(window, [&](const auto& known) { return known.bounds == whole; }));

    setProperty(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {10, 20, 30, 40});
    const Rect visible{whole.x + 10, whole.y + 30, whole.width - 30, whole.height - 70};
    EXPECT_TRUE(is(window, [&](const auto& known) { return known.bounds == visible; }));
    setProperty(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {500, 500, 500, 500});
    EXPECT_TRUE(is(window, [&](const auto& known) { return known.bounds == whole; }));

    constexpr std::uint32_t iconic = 3;
    screen().ask(window, "WM_CHANGE_STATE", iconic);
    EXPECT_TRUE(isGone());
    screen().ask(window, "_NET_ACTIVE_WINDOW", 2);
    EXPECT_TRUE(isOn(window, 0));
    screen().ask(screen().root(), "_NET_CURRENT_DESKTOP", 1);
    EXPECT_TRUE(isGone());
    screen().ask(screen().root(), "_NET_CURRENT_DESKTOP", 0);
    EXPECT_TRUE(isOn(window, 0));

    // Some window managers leave windows of other desktops mapped and only set a property.
    const auto lone = make({400, 100, 80, 80}, true);
    map(lone);
    EXPECT_TRUE(isOn(lone, 101));
    setProperty(lone, "WM_STATE", screen().atom("WM_STATE"), {iconic, 0});
    EXPECT_TRUE(eventually([&] { return !mirrored(lone); }));
}

TEST_F(MirrorTest, ReadsOnlyWhatIsAsked) {
    const auto window = make({1, 2, 30, 40}, true), hidden = make({5, 6, 7, 8}, true);
    map(window);
    ASSERT_TRUE(eventually([&] { return mirrored(window).has_value(); }));
    EXPECT_TRUE(mirror.bounds({}).empty());
    EXPECT_THAT(mirror.bounds({hidden, window}),
                ElementsAre(testing::Pair(window, Rect{1, 2, 30, 40})));
}

TEST_F(MirrorTest, FollowsButtonAndModifiersAndOnlyThatAKeyWasPressed) {
    const auto is = [&](bool button, bool option, bool optionOnly, bool keyPressed) {
        return eventually([=, this] {
            return mirror.inputs() == ScreenState::Inputs{button, option, optionOnly, keyPressed};
        });
    };
    screen().type("a");
    screen().keyDown(XK_Alt_L);
    EXPECT_TRUE(is(false, true, true, false));
    screen().type("a");
    EXPECT_TRUE(is(false, true, true, true));
    screen().keyUp(XK_Alt_L);
    EXPECT_TRUE(is(false, false, false, false));
    screen().press({XK_Caps_Lock});
    screen().keyDown(XK_Alt_L);
    EXPECT_TRUE(is(false, true, true, false)) << "a lock key is not a modifier";
    screen().keyDown(XK_Control_L);
    EXPECT_TRUE(is(false, true, false, false));
    screen().keyUp(XK_Control_L);
    EXPECT_TRUE(is(false, true, true, false)) << "a modifier does not count as a key";
    screen().type("a");
    screen().keyDown(XK_Shift_L);
    EXPECT_TRUE(is(false, true, false, true));
    screen().keyUp(XK_Shift_L);
    EXPECT_TRUE(is(false, true, true, true)) << "the other key still counts";
    screen().keyUp(XK_Alt_L);
    screen().press({XK_Caps_Lock});
    EXPECT_TRUE(is(false, false, false, false));

    const auto window = make({0, 0, 800, 600}, true);
    map(window);
    auto* const c = screen().connection();
    const auto button = [&](std::uint8_t type, std::uint8_t number) {
        xcb_test_fake_input(c, type, number, XCB_CURRENT_TIME, screen().root(), 0, 0, 0);
        screen().sync();
    };
    // For a left-handed user, the right button is the primary one.
    for (const std::uint8_t primary : {std::uint8_t{3}, std::uint8_t{1}}) {
        const auto mapping = replyOf(c, xcb_get_pointer_mapping, xcb_get_pointer_mapping_reply);
        auto* const buttons = xcb_get_pointer_mapping_map(mapping.get());
        buttons[0] = primary;
        buttons[2] = primary == 1 ? 3 : 1;
        const XReply<xcb_set_pointer_mapping_reply_t> set(xcb_set_pointer_mapping_reply(
            c, xcb_set_pointer_mapping(c, mapping->map_len, buttons), nullptr));
        button(XCB_BUTTON_PRESS, primary);
        EXPECT_TRUE(is(true, false, false, false));
        button(XCB_BUTTON_RELEASE, primary);
        EXPECT_TRUE(is(false, false, false, false));
    }
}

TEST(MirrorWithoutServer, ReadsNothingAndGoesOn) {
    const std::string before = std::getenv("DISPLAY");
    auto server = std::make_unique<XServer>();
    setenv("DISPLAY", server->display().c_str(), 1);
    WindowServerMirror mirror;
    const auto observation = mirror.observe([] {});
    const auto seesWindowOf = [&](const std::string& display) {
        SampleWindow window(display, {1, 2, 30, 40}, 0, SampleWindow::Kind::popup);
        window.map();
        return eventually([&] { return !mirror.windows().empty(); });
    };
    EXPECT_TRUE(seesWindowOf(server->display()));
    server.reset();
    EXPECT_TRUE(eventually([&] { return mirror.windows().empty(); }));
    EXPECT_TRUE(mirror.bounds({1}).empty());
    setenv("DISPLAY", before.c_str(), 1);
    EXPECT_TRUE(seesWindowOf(before)) << "a server that is there again";
}

}  // namespace
