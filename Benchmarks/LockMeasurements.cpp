// Measures how fast the lock hides the screen, and what the program costs. Compare values only
// within one run, not across runs or machines.

#include <chrono>
#include <functional>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>
#include <xcb/xcb.h>

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

void measure(Hiding& hiding, ScreenWatcher& watcher, const std::function<void()>& begin) {
    const auto start = Clock::now();
    begin();
    while (!watcher.isCovered()) {
    }
    const auto covered = Clock::now();
    while (!watcher.isGrabbed()) {
    }
    hiding.covered.push_back(milliseconds(covered - start));
    hiding.grabbed.push_back(milliseconds(Clock::now() - start));
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
        // The program is ready when it has grabbed the combination, which the server then refuses
        // to others.
        auto* const connection = desktop.screen().connection();
        auto* const symbols = xcb_key_symbols_alloc(connection);
        xcb_keycode_t* const l = xcb_key_symbols_get_keycode(symbols, XK_l);
        for (;;) {
            const auto cookie =
                xcb_grab_key_checked(connection, 0, desktop.screen().root(), XCB_MOD_MASK_4, *l,
                                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            const XReply<xcb_generic_error_t> refused(xcb_request_check(connection, cookie));
            if (refused) break;
            xcb_ungrab_key(connection, *l, desktop.screen().root(), XCB_MOD_MASK_4);
            desktop.screen().sync();
            usleep(500);
        }
        starts.push_back(milliseconds(Clock::now() - begin));
        std::free(l);
        xcb_key_symbols_free(symbols);
        karvo.waitUntilReady();
        karvo.process().kill();
    }
    report("Karvo: start to hotkey ready", starts);

    Karvo karvo(desktop);
    if (!karvo.waitUntilReady()) throw std::runtime_error("Karvo is not ready");
    std::this_thread::sleep_for(std::chrono::seconds(1));
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
        measure(hiding, watcher, [&] {
            desktop.screen().keyDown(XK_Super_L);
            desktop.screen().keyDown(XK_l);
            xcb_flush(desktop.screen().connection());
        });
        desktop.screen().keyUp(XK_l);
        desktop.screen().keyUp(XK_Super_L);
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
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

}  // namespace

int main() {
    return run(measureKarvo);
}
