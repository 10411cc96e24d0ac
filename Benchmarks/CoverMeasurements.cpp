// Measures how soon a cover follows its window, and what covers cost the program and the X server.
// It measures from outside, as another client of the server.

#include <atomic>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>
#include <xcb/xcb.h>

#include "CoverDesk.h"
#include "Measuring.h"
#include "RequestCounter.h"

using namespace DesktopTest;
using namespace Measuring;

namespace {

constexpr int repeats = 60;
constexpr int dragSeconds = 20;
constexpr int movesPerSecond = 60;

void sleep(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

/// Waits until the cover loop has returned to its slow rate.
void settle() {
    sleep(3);
}

/// A desktop with one display and two overlapping apps; "blue" is active.
struct Scene {
    CoverDesk desk{Desktop::Options()};
    CoverDesk::App& pink;
    CoverDesk::App& blue = desk.addApp("blue", 0x0000ff, 0x00ffff, {{900, 400, 700, 500}});

    explicit Scene(const std::vector<Area>& windows = {{200, 200, 800, 600}})
        : pink(desk.addApp("pink", 0xff00ff, 0xff00f0, windows)) {}

    pid_t program() { return desk.karvo().process().pid(); }
    static pid_t server() { return descendantsRunning("/usr/bin/Xvfb").at(0); }

    void coverPink() {
        desk.start({"pink"});
        desk.activate(blue);
        if (!eventually([&] { return desk.isHidden(pink); }))
            throw std::runtime_error("the private app is not covered");
        settle();
    }
};

struct Use {
    double seconds;
    double program;
    double server;
    long wakeUps;
};

/// Resources that the server, and the program unless `program` is 0, use while `action` runs.
template <class Action>
Use measureUse(pid_t program, const Action& action) {
    const pid_t server = Scene::server();
    const auto begin = Clock::now();
    const double programBefore = program > 0 ? secondsUsed(program) : 0;
    const double serverBefore = secondsUsed(server);
    const long wakeUpsBefore = program > 0 ? wakeUps(program) : 0;
    action();
    return {milliseconds(Clock::now() - begin) / 1000,
            program > 0 ? secondsUsed(program) - programBefore : 0,
            secondsUsed(server) - serverBefore, program > 0 ? wakeUps(program) - wakeUpsBefore : 0};
}

void reportUse(const std::string& what, const Use& use) {
    fmt::print("{:<44} program {:7.3f} %   X server {:6.2f} %   {:6.1f} wake-ups a second\n", what,
               100 * use.program / use.seconds, 100 * use.server / use.seconds,
               static_cast<double>(use.wakeUps) / use.seconds);
}

void reportRequests(const std::string& what, RequestCounter& counter,
                    const RequestCounter::Counts& counts, double units, const char* unit) {
    fmt::print("{:<44} {:.2f} a {} ({})\n", what, RequestCounter::total(counts) / units, unit,
               counts.empty() ? "none" : counter.describe(counts));
}

/// Raises a window repeatedly, and measures the time until another window is directly above it.
class Raising {
  public:
    Raising(Screen& screen, xcb_window_t window)
        : connection_(screen.connection()), frame_(screen.frameOf(window)) {
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, screen.root(), XCB_CW_EVENT_MASK, &mask);
        screen.sync();
    }

    template <class Raise, class Lower>
    void measure(const std::string& what, const Raise& raise, const Lower& lower) {
        std::vector<double> fromRequest;
        std::vector<double> fromEvent;
        for (int i = 0; i < repeats; ++i) {
            lower();
            // Long enough for the program to fall asleep, and different each time, so the phase of
            // its tick varies.
            sleep(0.25 + 0.007 * i);
            discardEvents();
            const auto asked = Clock::now();
            raise();
            waitForConfigure([this](const auto& event) { return event.window == frame_; });
            const auto raised = Clock::now();
            cover_ = waitForConfigure(
                [this](const auto& event) { return event.above_sibling == frame_; });
            const auto covered = Clock::now();
            fromRequest.push_back(milliseconds(covered - asked));
            fromEvent.push_back(milliseconds(covered - raised));
        }
        report(what + ", from the request", fromRequest);
        report(what + ", from the raise", fromEvent);
    }

    /// Measures the time from the mapping of another program's window to the mapping of a cover.
    template <class Map, class Unmap>
    void measureMapping(const std::string& what, const Map& map, const Unmap& unmap) {
        std::vector<double> times;
        for (int i = 0; i < repeats; ++i) {
            unmap();
            sleep(0.25 + 0.007 * i);
            discardEvents();
            map();
            const auto isCover = [this](const auto& event) { return isOwn(event.window); };
            waitFor<xcb_map_notify_event_t>(XCB_MAP_NOTIFY,
                                            [&](const auto& event) { return !isCover(event); });
            const auto mapped = Clock::now();
            waitFor<xcb_map_notify_event_t>(XCB_MAP_NOTIFY, isCover);
            times.push_back(milliseconds(Clock::now() - mapped));
        }
        report(what, times);
    }

    void stack(std::uint32_t mode) {
        xcb_configure_window(connection_, frame_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
        xcb_flush(connection_);
    }

  private:
    void discardEvents() {
        while (XReply<xcb_generic_event_t>(xcb_poll_for_event(connection_))) {
        }
    }

    /// Whether the window belongs to the connection of the last cover.
    bool isOwn(xcb_window_t window) const {
        const auto mask = xcb_get_setup(connection_)->resource_id_mask;
        return (window & ~mask) == (cover_ & ~mask);
    }

    template <class Event, class Condition>
    Event waitFor(std::uint8_t type, const Condition& isIt) {
        for (;;) {
            const XReply<xcb_generic_event_t> event(xcb_wait_for_event(connection_));
            if (!event) throw std::runtime_error("the X server is gone");
            const auto& told = *reinterpret_cast<const Event*>(event.get());
            if ((event->response_type & 0x7F) == type && isIt(told)) return told;
        }
    }

    template <class Condition>
    xcb_window_t waitForConfigure(const Condition& isIt) {
        return waitFor<xcb_configure_notify_event_t>(XCB_CONFIGURE_NOTIFY, isIt).window;
    }

    xcb_connection_t* connection_;
    xcb_window_t frame_;
    xcb_window_t cover_ = 0;
};

void drag(Scene& scene, int seconds) {
    Screen hand(scene.desk.desktop.display());
    const auto window = scene.pink.windows[0];
    auto next = Clock::now();
    for (int i = 0; i < seconds * movesPerSecond; ++i) {
        // Back and forth, ten pixels at a time.
        const int step = i % 160;
        const auto x = static_cast<std::uint32_t>(100 + 10 * (step < 80 ? step : 160 - step));
        xcb_configure_window(hand.connection(), window, XCB_CONFIG_WINDOW_X, &x);
        xcb_flush(hand.connection());
        next += std::chrono::microseconds(1'000'000 / movesPerSecond);
        std::this_thread::sleep_until(next);
    }
    hand.sync();
}

void measureRest(int seconds) {
    Scene scene;
    scene.desk.start();
    scene.desk.activate(scene.blue);
    settle();
    reportUse("at rest, nothing to cover", measureUse(scene.program(), [&] { sleep(seconds); }));
}

void measureCovered(int restSeconds) {
    Scene scene;
    reportUse("no program, a window is dragged", measureUse(0, [&] { drag(scene, dragSeconds); }));
    scene.coverPink();
    reportUse("at rest, one private app covered",
              measureUse(scene.program(), [&] { sleep(restSeconds); }));

    {
        RequestCounter counter(scene.desk.desktop.display(), scene.program());
        constexpr int countSeconds = 20;
        sleep(countSeconds);
        reportRequests("requests at rest", counter, counter.take(), countSeconds, "second");
        drag(scene, 10);
        reportRequests("requests while dragged", counter, counter.take(), 10.0 * movesPerSecond,
                       "move");
    }
    settle();
    reportUse("the covered window is dragged",
              measureUse(scene.program(), [&] { drag(scene, dragSeconds); }));
    if (!scene.desk.isHidden(scene.pink)) throw std::runtime_error("the private app shows");
}

/// Two hundred covers in overlapping rows.
void measureMany(int restSeconds) {
    std::vector<Area> windows;
    windows.reserve(200);
    for (int i = 0; i < 200; ++i)
        windows.push_back({40 + i % 50 * 30, 40 + i / 50 * 200 + i % 7 * 10, 240, 160});
    Scene scene(windows);
    const auto begin = Clock::now();
    scene.coverPink();
    fmt::print("{:<44} {:.0f} ms, {:.3f} s of the program\n", "start, and 200 windows covered",
               milliseconds(Clock::now() - begin), secondsUsed(scene.program()));
    reportUse("at rest, 200 windows covered",
              measureUse(scene.program(), [&] { sleep(restSeconds); }));
    reportUse("one of 200 covered windows is dragged",
              measureUse(scene.program(), [&] { drag(scene, dragSeconds); }));
}

void measureRaising() {
    Scene scene;
    scene.coverPink();
    Raising raising(scene.desk.screen(), scene.pink.windows[0]);
    const auto lower = [&] { raising.stack(XCB_STACK_MODE_BELOW); };
    raising.measure(
        "private app raised by itself", [&] { raising.stack(XCB_STACK_MODE_ABOVE); }, lower);

    scene.desk.activate(scene.pink);
    if (!scene.desk.lock(scene.pink)) throw std::runtime_error("the app is not locked");
    scene.desk.activate(scene.blue);
    settle();
    raising.measure(
        "locked app activated through openbox",
        [&] { scene.desk.screen().activate(scene.pink.windows[0]); },
        [&] {
            // Wait until the badge has the keyboard, or its app is hidden when another app is
            // activated.
            sleep(0.6);
            scene.desk.activate(scene.blue);
        });
    raising.measureMapping(
        "locked app restored from its icon",
        [&] { scene.desk.screen().activate(scene.pink.windows[0]); },
        [&] {
            sleep(0.6);
            constexpr std::uint32_t iconic = 3;
            scene.desk.screen().ask(scene.pink.windows[0], "WM_CHANGE_STATE", iconic);
        });
}

}  // namespace

/// `CoverMeasurements [SECONDS]`: the time for which a program at rest is observed.
int main(int argc, char** argv) {
    return run([&] {
        const int restSeconds = argc > 1 ? std::atoi(argv[1]) : 60;
        measureRaising();
        measureRest(restSeconds);
        measureCovered(restSeconds);
        measureMany(restSeconds);
    });
}
