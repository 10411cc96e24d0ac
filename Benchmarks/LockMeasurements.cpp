// Measures how fast the lock hides the screen, and what the program costs. Compare values only
// within one run, not across runs or machines.

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include "OrvelSystem/X11/StandIn.h"

#include "Desktop.h"
#include "Karvo.h"
#include "Measuring.h"
#include "ScreenWatcher.h"

using namespace DesktopTest;
using namespace Measuring;

namespace {

constexpr int repeats = 40;
constexpr int restSeconds = 60;

struct Hiding {
    std::vector<double> covered;
    std::vector<double> grabbed;
};

void measure(Hiding& hiding, ScreenWatcher& watcher, const std::function<void()>& begin,
             const std::function<bool()>& isGrabbed) {
    const auto start = Clock::now();
    begin();
    while (!watcher.isCovered()) {
    }
    const auto covered = Clock::now();
    while (!isGrabbed()) {
    }
    hiding.covered.push_back(milliseconds(covered - start));
    hiding.grabbed.push_back(milliseconds(Clock::now() - start));
}

void holdShortcut(Desktop& desktop) {
    desktop.screen().keyDown(XK_Super_L);
    desktop.screen().keyDown(XK_l);
    xcb_flush(desktop.screen().connection());
}

void releaseShortcut(Desktop& desktop) {
    desktop.screen().keyUp(XK_l);
    desktop.screen().keyUp(XK_Super_L);
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
}

void furnish(Desktop& desktop) {
    desktop.screen().paintBackground(checkerboard(0xFFFFFF, 0x000000));
    desktop.showText("Some text to hide", 14, 200, 200);
    desktop.showText("Some more of it", 14, 900, 500, true);
    desktop.screen().movePointer(960, 700);
    desktop.screen().sync();
}

void unlock(Desktop& desktop, ScreenWatcher& watcher) {
    desktop.screen().type(Desktop::password);
    desktop.screen().press({XK_Return});
    if (!eventually([&] { return watcher.isOpen() && !watcher.isGrabbed(); }))
        throw std::runtime_error("does not unlock");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
}

void measureKarvo() {
    Desktop desktop;
    furnish(desktop);
    const Portal portal(desktop.sessionBus(), desktop.environment(),
                        desktop.folder() / "portal.log");

    std::vector<double> starts;
    for (int i = 0; i < 5; ++i) {
        const auto begin = Clock::now();
        Karvo::Options options;
        options.withGuard = false;
        Karvo karvo(desktop, options);
        while (!desktop.screen().comboIsGrabbed(XCB_MOD_MASK_4, XK_l)) usleep(500);
        starts.push_back(milliseconds(Clock::now() - begin));
        karvo.waitUntilReady();
        karvo.process().kill();
    }
    report("Karvo: start to hotkey ready", starts);

    Karvo karvo(desktop);
    if (!karvo.waitUntilReady()) throw std::runtime_error("Karvo is not ready");
    // The rehearsal of a lock follows two seconds after the start.
    std::this_thread::sleep_for(std::chrono::seconds(5));
    const pid_t pid = karvo.process().pid();
    const double restMemory = memoryOf(pid).resident;
    double used = secondsUsed(pid);
    long woken = wakeUps(pid);
    std::this_thread::sleep_for(std::chrono::seconds(restSeconds));
    fmt::print("Karvo: at rest for {} s: {:.3f} s of processor time, {} wake-ups\n", restSeconds,
               secondsUsed(pid) - used, wakeUps(pid) - woken);
    fmt::print("Karvo: memory before the first lock {:.1f} MB\n", restMemory);

    ScreenWatcher watcher(desktop.screen());
    Hiding hiding;
    for (int i = 0; i < repeats; ++i) {
        measure(
            hiding, watcher, [&] { holdShortcut(desktop); }, [&] { return watcher.isGrabbed(); });
        releaseShortcut(desktop);
        if (i == 0) fmt::print("Karvo: memory locked {:.1f} MB\n", memoryOf(pid).resident);
        if (i == 1) {
            used = secondsUsed(pid);
            std::this_thread::sleep_for(std::chrono::seconds(5));
            fmt::print("Karvo: locked for 5 s: {:.3f} s of processor time\n",
                       secondsUsed(pid) - used);
        }
        unlock(desktop, watcher);
    }
    report("Karvo: key to every pixel covered", hiding.covered);
    report("Karvo: key to covered and input grabbed", hiding.grabbed);
    fmt::print("Karvo: memory after {} locks {:.1f} MB\n", repeats, memoryOf(pid).resident);
}

/// Something that has grabbed the keyboard when the shortcut is pressed.
struct Menu {
    const char* name;
    Arguments program;  // empty for one that the window manager shows
    const char* window;
    std::function<void(Screen&)> open;
};

const Menu menus[] = {
    {"no menu", {}, "", [](Screen&) {}},
    {"menu of a GTK program",
     {"mousepad", "--disable-server"},
     "mousepad",
     [](Screen& screen) { screen.press({XK_F10}); }},
    {"menu of a Qt program",
     {KARVO_QT_MENU},
     "QtMenu",
     [](Screen& screen) {
         screen.press({XK_Alt_L, XK_m});
     }},
    {"menu of openbox",
     {},
     "",
     [](Screen& screen) {
         screen.movePointer(1700, 900);
         screen.buttonDown(3);
         screen.buttonUp(3);
     }},
};

/// The guard's window states from when on Karvo receives the keys. A grab would not tell, since the
/// menu has one.
bool karvoHasKeys(Screen& screen) {
    using OrvelSystem::StandIn;
    const auto keys = screen.cardinal(screen.ownerOf(StandIn::selection), StandIn::takesKeys);
    return (keys.value_or(StandIn::free) & (StandIn::taken | StandIn::takenFromDevices)) != 0;
}

void measureMenu(const Menu& menu) {
    Desktop::Options options;
    options.realDevices = true;
    Desktop desktop(options);
    furnish(desktop);
    auto& screen = desktop.screen();
    if (!menu.program.empty()) {
        desktop.start(menu.program, menu.window);
        std::optional<xcb_window_t> window;
        if (!eventually([&] { return (window = screen.find(menu.window)).has_value(); }))
            throw std::runtime_error(std::string(menu.window) + " did not start");
        screen.activate(*window);
    }
    Karvo karvo(desktop);
    if (!karvo.waitUntilReady() || !eventually([&] { return screen.hasOwner("_KARVO_STAND_IN"); }))
        throw std::runtime_error("Karvo is not ready");
    std::this_thread::sleep_for(std::chrono::seconds(1));
    ScreenWatcher desktopWatcher(screen);
    Hiding hiding;
    for (int i = 0; i < repeats / 2; ++i) {
        menu.open(screen);
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        ScreenWatcher watcher(screen);
        if (menu.name != std::string("no menu") && !screen.keyboardIsGrabbed())
            throw std::runtime_error(std::string(menu.name) + " is not open");
        measure(
            hiding, watcher, [&] { holdShortcut(desktop); }, [&] { return karvoHasKeys(screen); });
        releaseShortcut(desktop);
        unlock(desktop, desktopWatcher);
    }
    report(std::string(menu.name) + ": key to every pixel covered", hiding.covered);
    report(std::string(menu.name) + ": key to covered and keys received", hiding.grabbed);
}

}  // namespace

int main() {
    return run([] {
        measureKarvo();
        for (const auto& menu : menus) measureMenu(menu);
    });
}
