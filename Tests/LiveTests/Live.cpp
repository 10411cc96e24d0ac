#include "Live.h"

#include <QAccessible>
#include <QApplication>

#include "OrvelSystem/X11/WindowManager.h"

#include "Desktop/Eventually.h"
#include "Desktop/XServer.h"
#include "OneWindowApp.h"
#include "ShowPanel.h"

namespace {

struct World {
    TemporaryFolder folder;
    XServer server;
    PrivateBus bus{folder.path(), "bus", {{"PATH", "/usr/bin:/bin"}}};
    Screen screen{server.display()};
};
std::unique_ptr<World> world;

// Also called before Qt connects, because it reads the displays only then.
void setUsualDisplays() {
    const std::vector<Monitor> usual{{"left", {0, 0, 400, 600}}, {"right", {400, 0, 400, 600}}};
    if (world->screen.displays() != usual) world->screen.setDisplays(usual);
}

}  // namespace

LiveTest::LiveTest() {
    setUsualDisplays();
}

LiveTest::~LiveTest() {
    endWindowManager();
}

Screen& LiveTest::screen() {
    return world->screen;
}

const std::string& LiveTest::display() {
    return world->server.display();
}

const TemporaryFolder& LiveTest::folder() {
    return world->folder;
}

PrivateBus& LiveTest::bus() {
    return world->bus;
}

Environment LiveTest::environment() {
    return {{"PATH", "/usr/sbin:/usr/bin:/bin"},
            {"HOME", folder().path().string()},
            {"XDG_RUNTIME_DIR", folder().path().string()},
            {"DBUS_SESSION_BUS_ADDRESS", bus().address()},
            {"DBUS_SYSTEM_BUS_ADDRESS", bus().address()},
            {"DISPLAY", display()}};
}

xcb_window_t LiveTest::createWindow(Area area, std::uint32_t mask,
                                    const std::vector<std::uint32_t>& values) {
    const xcb_window_t window = xcb_generate_id(screen().connection());
    xcb_create_window(screen().connection(), XCB_COPY_FROM_PARENT, window, screen().root(),
                      static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                      static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, mask, values.data());
    return window;
}

bool LiveTest::eventually(const std::function<bool()>& holds) {
    return DesktopTest::eventually([&] {
        QCoreApplication::processEvents();
        // processEvents does not handle deferred deletions without a running event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return holds();
    });
}

bool LiveTest::stays(const std::function<bool()>& holds, std::chrono::milliseconds period) {
    return DesktopTest::stays(
        [&] {
            QCoreApplication::processEvents();
            return holds();
        },
        period);
}

void LiveTest::startWindowManager() {
    constexpr auto desktops = "_NET_NUMBER_OF_DESKTOPS";
    xcb_delete_property(screen().connection(), screen().root(), screen().atom(desktops));
    screen().sync();
    manager_.emplace(Arguments{"openbox", "--sm-disable"}, environment());
    ASSERT_TRUE(eventually([] { return WindowManager::isThere(); }));
    // openbox loses windows and requests that arrive while it starts.
    ASSERT_TRUE(eventually([&] {
        screen().ask(screen().root(), desktops, 3);
        return screen().cardinal(screen().root(), desktops) == 3;
    }));
}

void LiveTest::endWindowManager() {
    if (!manager_) return;
    manager_.reset();
    EXPECT_TRUE(eventually([] { return !WindowManager::isThere(); }));
}

// libspeechd leaks its copy of the error if no speech service answers. Only the slow unwinder
// attributes the leak to the library.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:spd_open2\n";
}

int main(int argc, char** argv) {
    const std::string_view role = argc > 1 ? argv[1] : "";
    if (role == showPanelArgument) return showPanel(argc, argv);
    if (role == OneWindowApp::argument) return OneWindowApp::run(argv[2]);
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    world = std::make_unique<World>();
    setUsualDisplays();
    const std::pair<const char*, std::string> variables[] = {
        {"DISPLAY", world->server.display()},
        {"DBUS_SESSION_BUS_ADDRESS", world->bus.address()},
        {"DBUS_SYSTEM_BUS_ADDRESS", world->bus.address()},
        {"XDG_DATA_HOME", world->folder / "share"},
        {"XDG_SESSION_ID", "1"},
        {"QT_QPA_PLATFORM", "xcb"},
        // Qt 6.8 leaks its call to the portal when the program ends before the reply.
        {"QT_NO_XDG_DESKTOP_PORTAL", "1"},
    };
    for (const auto& [name, value] : variables) setenv(name, value.c_str(), 1);
    int result = 1;
    {
        const QApplication app(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        QAccessible::setActive(true);
        result = RUN_ALL_TESTS();
        // What the last test deletes later would count as a leak.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    world.reset();
    return result;
}
