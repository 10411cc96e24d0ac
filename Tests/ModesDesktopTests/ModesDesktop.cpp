#include "ModesDesktop.h"

#include <QApplication>
#include <algorithm>
#include <cstdlib>

#include <fmt/format.h>

#include "OrvelSystem/Linux/X11.h"

#include "Desktop/Eventually.h"
#include "Desktop/Image.h"
#include "Desktop/XServer.h"

using namespace DesktopTest;

namespace {

std::unique_ptr<TemporaryFolder> sharedFolder;
std::unique_ptr<PrivateBus> sharedBus;
std::unique_ptr<Screen> sharedScreen;

}  // namespace

Screen& ModesDesktopTest::screen() {
    return *sharedScreen;
}

const TemporaryFolder& ModesDesktopTest::folder() {
    return *sharedFolder;
}

PrivateBus& ModesDesktopTest::bus() {
    return *sharedBus;
}

Environment ModesDesktopTest::environment() {
    Environment environment{{"PATH", "/usr/sbin:/usr/bin:/bin"},
                            {"HOME", sharedFolder->path().string()},
                            {"XDG_RUNTIME_DIR", sharedFolder->path().string()}};
    if (sharedBus) {
        environment["DBUS_SESSION_BUS_ADDRESS"] = sharedBus->address();
        environment["DBUS_SYSTEM_BUS_ADDRESS"] = sharedBus->address();
    }
    if (const char* const display = std::getenv("DISPLAY")) environment["DISPLAY"] = display;
    return environment;
}

ModesDesktopTest::ModesDesktopTest() {
    screen().paintBackground(testPattern(800, 600));
    screen().movePointer(200, 500);
    screen().sync();
}

bool ModesDesktopTest::eventually(const std::function<bool()>& holds) {
    return DesktopTest::eventually([&] {
        QCoreApplication::processEvents();
        return holds();
    });
}

bool ModesDesktopTest::stays(const std::function<bool()>& holds) {
    return DesktopTest::stays(
        [&] {
            QCoreApplication::processEvents();
            return holds();
        },
        std::chrono::milliseconds(500));
}

xcb_window_t ModesDesktopTest::addApp(const std::string& name, Area area) {
    apps_.push_back(std::make_unique<Process>(
        Arguments{KARVO_SAMPLE_APP, name, "ff00aa", "aa00ff",
                  fmt::format("{}x{}+{}+{}", area.width, area.height, area.x, area.y)},
        environment()));
    std::optional<xcb_window_t> window;
    const bool isActive = eventually([&] {
        window = screen().find(name + "0");
        if (!window) return false;
        if (screen().activeWindow() == *window && screen().focusedWindow() == *window) return true;
        // openbox loses a window that comes while it looks at displays, so it is asked again.
        xcb_map_window(screen().connection(), *window);
        screen().activate(*window);
        return false;
    });
    if (!isActive) throw std::runtime_error(name + " does not come up");
    return screen().frameOf(*window);
}

std::size_t ModesDesktopTest::place(xcb_window_t frame) {
    const auto windows = screen().mappedWindows();
    return static_cast<std::size_t>(std::ranges::find(windows, frame) - windows.begin());
}

bool ModesDesktopTest::isOurs(xcb_window_t window) {
    const auto* const setup = xcb_get_setup(OrvelSystem::X11::shared().connection());
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

void ModesDesktopTest::keepPicture(const std::string& name, Area area) {
    if (const char* const kept = std::getenv("KARVO_PICTURES"))
        screen().picture(area).savePng(std::filesystem::path(kept) / (name + ".png"));
}

// Where no speech service answers, the library loses its own copy of the reason. Only the slow way
// of unwinding sees that it was the library.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:spd_open2\n";
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    sharedFolder = std::make_unique<TemporaryFolder>();
    const XServer server;
    qputenv("DISPLAY", QByteArray::fromStdString(server.display()));
    sharedBus = std::make_unique<PrivateBus>(
        sharedFolder->path(), "bus",
        Environment{{"PATH", "/usr/bin:/bin"}, {"HOME", sharedFolder->path().string()}});
    for (const char* const name : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
        qputenv(name, QByteArray::fromStdString(sharedBus->address()));
    qputenv("XDG_SESSION_ID", "1");
    qputenv("QT_QPA_PLATFORM", "xcb");
    sharedScreen = std::make_unique<Screen>(server.display());
    sharedScreen->setDisplays({{"left", {0, 0, 400, 600}}, {"right", {400, 0, 400, 600}}});
    int result = 1;
    {
        const Process windowManager({"openbox", "--sm-disable"},
                                    {{"PATH", "/usr/bin:/bin"},
                                     {"DISPLAY", server.display()},
                                     {"HOME", sharedFolder->path().string()}});
        const bool isManaged = DesktopTest::eventually([] {
            return !sharedScreen->textProperty(sharedScreen->root(), "_OB_VERSION").empty();
        });
        if (!isManaged) return 1;
        const QApplication app(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        result = RUN_ALL_TESTS();
    }
    sharedScreen.reset();
    sharedBus.reset();
    sharedFolder.reset();
    return result;
}
