// The program never reads the screen: no reply of the X server to it contains pixels.

#include "CoverDesk.h"
#include "RequestCounter.h"

namespace {

/// Counts requests that return pixels, or that create a pixmap in memory shared with the client. It
/// covers all connections except those that this process has now.
class PixelRequests {
  public:
    explicit PixelRequests(Desktop& desktop)
        : counter_(desktop.display()), connection_(desktop.screen().connection()) {
        wanted_.push_back({XCB_GET_IMAGE, 0});
        add("MIT-SHM", {4, 5});  // ShmGetImage, ShmCreatePixmap
        // PixmapFromBuffer, BufferFromPixmap and their multi-buffer forms
        add("DRI3", {2, 3, 7, 8});
    }

    /// Requests since the last call; `own` counts those of this process.
    struct Seen {
        int own = 0;
        RequestCounter::Counts others;
    };
    Seen take() {
        const auto ownClients = counter_.clientsOf(getpid());
        Seen seen;
        for (const auto& [client, counts] : counter_.takeByClient()) {
            const bool isOwn = std::ranges::find(ownClients, client) != ownClients.end();
            for (const auto& [request, count] : counts) {
                if (std::ranges::find(wanted_, request) == wanted_.end()) continue;
                if (isOwn)
                    seen.own += count;
                else
                    seen.others[request] += count;
            }
        }
        return seen;
    }
    std::string describe(const RequestCounter::Counts& counts) { return counter_.describe(counts); }

  private:
    void add(const std::string& extension, const std::vector<std::uint8_t>& minors) {
        const auto reply = replyOf(connection_, xcb_query_extension, xcb_query_extension_reply,
                                   extension.size(), extension.c_str());
        if (!reply || reply->present == 0) return;
        for (const auto minor : minors) wanted_.push_back({reply->major_opcode, minor});
    }

    RequestCounter counter_;
    xcb_connection_t* connection_;
    std::vector<RequestCounter::Request> wanted_;
};

struct PixelDesk : CoverDesk {
    void enterPassword() {
        screen().type(Desktop::password);
        screen().press({XK_Return});
    }
    bool comes(std::string_view title) {
        return eventually([&] { return screen().titles().contains(std::string(title)); });
    }
    bool goes(std::string_view title) {
        return eventually([&] { return !screen().titles().contains(std::string(title)); });
    }
    void clickStatusItem() {
        const auto name =
            "org.kde.StatusNotifierItem-" + std::to_string(karvo().process().pid()) + "-1";
        ASSERT_GE(sd_bus_call_method(desktop.sessionBus().connection(), name.c_str(),
                                     "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                                     "Activate", nullptr, nullptr, "ii", 1800, 10),
                  0);
    }
    /// The pixels of the screen where the panel opens.
    Image panelPlace() { return screen().picture({1700, 100, 60, 60}); }
};

TEST(Pixels, NoneAreReadInTheProgramsWholeLife) {
    PixelDesk desk;
    auto& pink = desk.pink();
    auto& blue = desk.blue();
    PixelRequests requests(desk.desktop);
    desk.start({"blue"});

    desk.activate(pink, 1);
    ASSERT_TRUE(eventually([&] { return desk.isHidden(blue); })) << "private apps";
    ASSERT_TRUE(desk.lock(pink));
    desk.screen().press({XK_Super_L, XK_Alt_L, XK_l});
    ASSERT_TRUE(desk.badgeSays(pink, "enter your password", 1));
    desk.enterPassword();
    ASSERT_TRUE(eventually([&] { return desk.isClear(pink, 1); }));

    desk.karvo().open("karvo://blur/on");
    ASSERT_TRUE(eventually([&] { return desk.isHidden(pink); }));
    desk.karvo().open("karvo://blur/off");
    ASSERT_TRUE(eventually([&] { return desk.isClear(pink, 1); }));
    desk.karvo().open("karvo://focus/on");
    const Area behind = {210, 210, 180, 200};
    ASSERT_TRUE(eventually([&] { return desk.shown(pink, behind) == 0; }));
    desk.karvo().open("karvo://focus/off");
    ASSERT_TRUE(eventually([&] { return desk.shown(pink, behind) > 0.9; }));

    desk.screen().press({XK_Super_L, XK_l});
    ASSERT_TRUE(eventually([&] { return desk.isHidden(pink); }));
    desk.screen().setDisplays({{"Left", leftDisplay}});
    desk.screen().setDisplays({{"Left", leftDisplay}, {"Right", rightDisplay}});
    desk.enterPassword();
    ASSERT_TRUE(eventually([&] { return desk.isClear(pink, 1); }));

    const Image before = desk.panelPlace();
    desk.clickStatusItem();
    ASSERT_TRUE(eventually([&] { return difference(before, desk.panelPlace()) > 20; }));
    desk.clickStatusItem();
    ASSERT_TRUE(eventually([&] { return difference(before, desk.panelPlace()) == 0; }));
    desk.karvo().startAgain();
    ASSERT_TRUE(desk.comes("Karvo Settings"));
    desk.screen().press({XK_Tab});
    for (int pane = 0; pane < 5; ++pane) {
        desk.screen().press({XK_Down});
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    desk.screen().press({XK_Control_L, XK_w});
    ASSERT_TRUE(desk.goes("Karvo Settings"));

    desk.karvo().process().signal(SIGTERM);
    ASSERT_EQ(desk.karvo().process().waitForExit(), 0);
    const auto seen = requests.take();
    EXPECT_GT(seen.own, 0) << "this test takes pictures, which are recorded";
    EXPECT_EQ(requests.describe(seen.others), "");

    // As a control, the recorder does catch a program that reads the screen.
    run({"import", "-window", "root", "-crop", "9x9+0+0", "ppm:/dev/null"},
        desk.desktop.environment());
    EXPECT_NE(requests.describe(requests.take().others), "");
}

}  // namespace
