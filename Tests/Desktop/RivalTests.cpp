// Another program of the session manipulates the windows of a lock.

#include "LockDesk.h"

namespace DesktopTest {
namespace {

/// A desktop that is locked, and the windows of the lock.
class RivalDesk : public LockDesk {
  public:
    RivalDesk() {
        before_ = screen().mappedWindows();
        start();
        if (!lockByShortcut() || !cardSays(onlyDisplay, "enter your password"))
            throw std::runtime_error("not locked");
        standIn = screen().ownerOf("_KARVO_STAND_IN");
        keys_ = window().keyPresses();
    }

    /// Checks that the screen stays covered and that keys go to the lock and not to the window.
    void expectLocked() {
        EXPECT_TRUE(eventually([this] { return isCovered(); }));
        // Keys that are typed before the card is back are lost.
        EXPECT_TRUE(eventually([this] { return submitWrong(std::chrono::seconds(5)); }));
        window().raise();
        screen().type("abc");
        EXPECT_TRUE(staysCovered());
        EXPECT_EQ(window().keyPresses(), keys_);
        for (int i = 0; i < 3; ++i) screen().press({XK_BackSpace});
    }

    /// The windows of the lock that are mapped now.
    std::vector<xcb_window_t> shown() {
        auto windows = screen().mappedWindows();
        std::erase_if(windows, [this](auto w) { return std::ranges::count(before_, w) > 0; });
        return windows;
    }
    /// Their areas, from bottom to top.
    std::vector<Area> places() {
        std::vector<Area> areas;
        for (const auto w : shown()) areas.push_back(screen().areaOf(w));
        return areas;
    }
    xcb_window_t standIn = XCB_NONE;

  private:
    std::vector<xcb_window_t> before_;
    int keys_ = 0;
};

void configure(Screen& screen, xcb_window_t window, std::uint16_t what, std::uint32_t value) {
    xcb_configure_window(screen.connection(), window, what, &value);
}

struct Act {
    const char* name;
    void (*perform)(Screen&, xcb_window_t);
};

const Act acts[] = {
    {"Unmaps", [](Screen& s, xcb_window_t w) { xcb_unmap_window(s.connection(), w); }},
    {"Moves", [](Screen& s, xcb_window_t w) { configure(s, w, XCB_CONFIG_WINDOW_X, 5000); }},
    {"Lowers",
     [](Screen& s, xcb_window_t w) {
         configure(s, w, XCB_CONFIG_WINDOW_STACK_MODE, XCB_STACK_MODE_BELOW);
     }},
    {"Resizes", [](Screen& s, xcb_window_t w) { configure(s, w, XCB_CONFIG_WINDOW_HEIGHT, 1); }},
    {"Destroys", [](Screen& s, xcb_window_t w) { xcb_destroy_window(s.connection(), w); }},
};

class Rival : public testing::TestWithParam<Act> {};

TEST_P(Rival, WhatIsDoneToTheWindowsOfTheLockHeals) {
    RivalDesk desk;
    auto& screen = desk.screen();
    ASSERT_TRUE(eventually([&] { return desk.shown().size() >= 2; }));
    const auto places = desk.places();
    // Each window separately, then all of them together.
    for (const auto window : desk.shown()) {
        GetParam().perform(screen, window);
        screen.sync();
        EXPECT_TRUE(eventually([&] { return desk.isCovered() && desk.places() == places; }));
        EXPECT_TRUE(desk.staysCovered());
    }
    for (const auto window : desk.shown()) GetParam().perform(screen, window);
    screen.sync();
    EXPECT_TRUE(eventually([&] { return desk.isCovered() && desk.places() == places; }));
    desk.expectLocked();
    EXPECT_TRUE(desk.unlock());
    EXPECT_EQ(screen.held(), "");
    EXPECT_TRUE(desk.typesIntoWindow());
    EXPECT_EQ(desk.desktop.logind().lockRequests(), 0);
}

std::vector<Act> standInActs() {
    std::vector<Act> all(std::begin(acts), std::end(acts));
    all.push_back({"EndsItsConnection",
                   [](Screen& s, xcb_window_t w) { xcb_kill_client(s.connection(), w); }});
    all.push_back({"ForgesItsState", [](Screen& s, xcb_window_t w) {
                       xcb_delete_property(s.connection(), w, s.atom("_KARVO_STAND_IN_TAKES_KEYS"));
                       xcb_set_selection_owner(s.connection(), XCB_NONE, s.atom("_KARVO_STAND_IN"),
                                               XCB_CURRENT_TIME);
                   }});
    return all;
}

class StandInRival : public testing::TestWithParam<Act> {};

TEST_P(StandInRival, CannotKeepItFromCoveringForTheAppThatIsGone) {
    RivalDesk desk;
    auto& screen = desk.screen();
    GetParam().perform(screen, desk.standIn);
    screen.sync();
    ASSERT_TRUE(eventually([&] { return screen.hasOwner("_KARVO_STAND_IN"); }));
    EXPECT_TRUE(desk.staysCovered());
    const auto keys = [&] {
        return screen.cardinal(screen.ownerOf("_KARVO_STAND_IN"), "_KARVO_STAND_IN_TAKES_KEYS");
    };
    EXPECT_TRUE(eventually([&] { return keys().value_or(0) != 0; }));
    desk.karvo().process().kill();
    // The same while the stand-in covers the screen.
    EXPECT_TRUE(eventually([&] { return desk.isCovered(); }));
    GetParam().perform(screen, screen.ownerOf("_KARVO_STAND_IN"));
    screen.sync();
    EXPECT_TRUE(eventually([&] { return desk.isCovered(); }));
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    desk.expectLocked();
    EXPECT_TRUE(desk.unlock());
}

INSTANTIATE_TEST_SUITE_P(All, Rival, testing::ValuesIn(acts),
                         [](const auto& act) { return act.param.name; });
INSTANTIATE_TEST_SUITE_P(All, StandInRival, testing::ValuesIn(standInActs()),
                         [](const auto& act) { return act.param.name; });

TEST(RivalEvents, AreNotBelieved) {
    RivalDesk desk;
    auto& screen = desk.screen();
    const auto send = [&](xcb_window_t to, auto event) {
        xcb_send_event(screen.connection(), 0, to, 0, reinterpret_cast<const char*>(&event));
        screen.sync();
    };
    for (int i = 0; i < 5; ++i) {
        for (const auto window : desk.shown()) {
            send(window, xcb_focus_out_event_t{XCB_FOCUS_OUT,
                                               XCB_NOTIFY_DETAIL_NONLINEAR,
                                               0,
                                               window,
                                               XCB_NOTIFY_MODE_NORMAL,
                                               {}});
            send(window, xcb_unmap_notify_event_t{XCB_UNMAP_NOTIFY, 0, 0, window, window, 0, {}});
        }
        // Several losses within one reclaim of the keyboard count as one.
        EXPECT_TRUE(stays([&] { return desk.isCovered(); }, std::chrono::milliseconds(500)));
    }
    EXPECT_EQ(desk.desktop.logind().lockRequests(), 0) << "handed off";
    desk.expectLocked();
    // A guard that believes its stand-in to be unmapped would neither draw text nor grab the keys.
    for (const auto guard : desk.karvo().guards()) ::kill(guard, SIGSTOP);
    desk.karvo().process().kill();
    for (const int type : {XCB_UNMAP_NOTIFY, XCB_MAP_NOTIFY, XCB_UNMAP_NOTIFY})
        send(desk.standIn,
             xcb_unmap_notify_event_t{
                 static_cast<std::uint8_t>(type), 0, 0, desk.standIn, desk.standIn, 0, {}});
    for (const auto guard : desk.karvo().guards()) ::kill(guard, SIGCONT);
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    desk.expectLocked();
    EXPECT_TRUE(desk.unlock());
}

}  // namespace
}  // namespace DesktopTest
