// Measures how soon Blur Screen hides the screen and Focus Blur follows the focus, what Focus Blur
// costs at rest, and how soon the panel and Settings appear. It measures from outside, as another
// client of the X server.

#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>

#include "CoverDesk.h"
#include "Measuring.h"
#include "RequestCounter.h"
#include "ScreenWatcher.h"

using namespace DesktopTest;
using namespace Measuring;

namespace {

constexpr int repeats = 40;
constexpr std::chrono::milliseconds settling{500};

void settle() {
    std::this_thread::sleep_for(settling);
}

/// The limit is long, so that something that never happens is not mistaken for a slow run.
void await(const std::function<bool()>& holds, const char* what) {
    const auto end = Clock::now() + std::chrono::seconds(20);
    while (!holds())
        if (Clock::now() > end) throw std::runtime_error(what);
}

void setSettings(Desktop& desktop, const std::string& json) {
    std::filesystem::create_directories(desktop.configFolder() / "Karvo");
    writeText(desktop.configFolder() / "Karvo/settings.json", json);
}

void paintDetail(Screen& screen) {
    screen.paintBackground(checkerboard(0xFFFFFF, 0x000000));
    screen.movePointer(960, 700);
    screen.sync();
}

void measureBlurScreen(const char* name, const Desktop::Options& options) {
    Desktop desktop(options);
    auto& screen = desktop.screen();
    paintDetail(screen);
    setSettings(desktop, R"({"shortcut.quickBlur": "11:4:B"})");
    // Request reduced motion, which disables the fade.
    const Portal portal(desktop.sessionBus(), desktop.environment(), desktop.folder() / "portal");
    Karvo karvo(desktop);
    if (!karvo.waitUntilReady()) throw std::runtime_error("the program is not ready");
    settle();
    ScreenWatcher watcher(screen);
    std::vector<double> covered;
    std::vector<double> open;
    for (int i = 0; i < repeats; ++i) {
        const auto pressed = Clock::now();
        screen.keyDown(XK_Control_L);
        screen.keyDown(XK_b);
        screen.sync();
        await([&] { return watcher.isCovered(); }, "Blur Screen does not cover");
        covered.push_back(milliseconds(Clock::now() - pressed));
        screen.keyUp(XK_b);
        screen.keyUp(XK_Control_L);
        settle();
        const auto revealed = Clock::now();
        screen.press({XK_Escape});
        await([&] { return watcher.isOpen(); }, "Blur Screen does not go");
        open.push_back(milliseconds(Clock::now() - revealed));
        settle();
    }
    report(fmt::format("Blur Screen, {}: key to every pixel blurred", name), covered);
    report(fmt::format("Blur Screen, {}: Escape to open", name), open);
}

void measureFocusBlur(int restSeconds) {
    CoverDesk desk;
    auto& pink = desk.addApp("pink", 0xff00ff, 0xff00f0, {{200, 200, 500, 300}});
    auto& blue = desk.blue();
    desk.addPortal();
    desk.activate(pink);
    desk.start();
    desk.karvo().open("karvo://focus/on");
    await([&] { return desk.isHidden(blue); }, "Focus Blur does not cover");
    settle();

    const Area inPink{300, 300, 8, 8};
    const Area inBlue{1200, 500, 8, 8};
    std::vector<double> times;
    for (int i = 0; i < 2 * repeats; ++i) {
        const bool toBlue = i % 2 == 0;
        const auto& next = toBlue ? blue : pink;
        const auto& last = toBlue ? pink : blue;
        const auto asked = Clock::now();
        desk.screen().activate(next.windows[0]);
        await(
            [&] {
                return desk.shown(next, toBlue ? inBlue : inPink) == 1 &&
                       desk.shown(last, toBlue ? inPink : inBlue) == 0;
            },
            "Focus Blur does not follow");
        times.push_back(milliseconds(Clock::now() - asked));
        settle();
    }
    report("Focus Blur: focus asked for to the new arrangement", times);

    const pid_t pid = desk.karvo().process().pid();
    const double used = secondsUsed(pid);
    const long woken = wakeUps(pid);
    std::this_thread::sleep_for(std::chrono::seconds(restSeconds));
    fmt::print("Focus Blur at rest for {} s: {:.3f} % of a core, {:.1f} wake-ups a second\n",
               restSeconds, 100 * (secondsUsed(pid) - used) / restSeconds,
               static_cast<double>(wakeUps(pid) - woken) / restSeconds);
    RequestCounter counter(desk.desktop.display(), pid);
    std::this_thread::sleep_for(std::chrono::seconds(10));
    const auto counts = counter.take();
    fmt::print("Focus Blur at rest: {} X requests in 10 s\n", RequestCounter::total(counts));
}

void require(int result, const char* what) {
    if (result < 0) throw std::runtime_error(std::string(what) + " is not answered");
}

void activateProgram(Desktop& desktop) {
    require(sd_bus_call_method(desktop.sessionBus().connection(), "com.brindlewick.karvo",
                               "/com/brindlewick/karvo", "org.freedesktop.Application", "Activate",
                               nullptr, nullptr, "a{sv}", 0),
            "Activate");
}

void clickStatusItem(Desktop& desktop, pid_t pid) {
    const auto name = fmt::format("org.kde.StatusNotifierItem-{}-1", pid);
    require(sd_bus_call_method(desktop.sessionBus().connection(), name.c_str(),
                               "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate",
                               nullptr, nullptr, "ii", 1800, 10),
            "the status item");
}

void reportMemory(const char* when, pid_t pid) {
    const auto memory = memoryOf(pid);
    fmt::print("{:<44} resident {:.1f} MB, share {:.1f} MB, its own {:.1f} MB\n", when,
               memory.resident, memory.share, memory.own);
}

/// Opens the panel like a status item host, and Settings like a second start of the program. Each
/// counts as open when the pixels in its area have changed.
void measureWindows() {
    Desktop desktop;
    auto& screen = desktop.screen();
    paintDetail(screen);
    Karvo karvo(desktop);
    if (!karvo.waitUntilReady()) throw std::runtime_error("the program is not ready");
    settle();
    const pid_t pid = karvo.process().pid();
    const auto isOpen = [&](Area place) {
        const Image picture = screen.picture(place);
        return picture.shareOf(0xFFFFFF) != 0.5;
    };

    const Area inSettings{960, 540, 16, 16};
    std::vector<double> settings;
    reportMemory("before Settings", pid);
    for (int i = 0; i < repeats / 2; ++i) {
        const auto asked = Clock::now();
        activateProgram(desktop);
        await([&] { return isOpen(inSettings); }, "Settings does not open");
        settings.push_back(milliseconds(Clock::now() - asked));
        settle();
        if (i == 0) reportMemory("Settings open", pid);
        screen.press({XK_Control_L, XK_w});
        await([&] { return !isOpen(inSettings); }, "Settings does not close");
        settle();
        if (i == 0) fmt::print("Settings: first open {:.1f} ms\n", settings.front());
    }
    report("Settings: asked for to painted", settings);
    reportMemory("Settings closed", pid);

    const Area inPanel{1700, 100, 16, 16};
    std::vector<double> panel;
    for (int i = 0; i < repeats; ++i) {
        const auto clicked = Clock::now();
        clickStatusItem(desktop, pid);
        await([&] { return isOpen(inPanel); }, "the panel does not open");
        panel.push_back(milliseconds(Clock::now() - clicked));
        settle();
        // Close it by the item too: after a press elsewhere, the next click on the item would be
        // taken for that press.
        clickStatusItem(desktop, pid);
        await([&] { return !isOpen(inPanel); }, "the panel does not close");
        settle();
    }
    report("panel: click to painted", panel);
}

}  // namespace

/// `ModeMeasurements [SECONDS]`: the time for which a program at rest is observed.
int main(int argc, char** argv) {
    return run([&] {
        const int restSeconds = argc > 1 ? std::atoi(argv[1]) : 60;
        measureBlurScreen("one display", Desktop::Options());
        measureBlurScreen("two displays", Desktop::twoDisplays());
        measureFocusBlur(restSeconds);
        measureWindows();
    });
}
