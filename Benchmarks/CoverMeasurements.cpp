// How soon a cover follows its window, and what covers cost the program and the X server. Seen from
// outside, as another client of the same server.

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

/// Waits until the loop of the covers has gone back to its slow rate.
void settle() {
    sleep(3);
}

/// A desktop with one display, and two apps that overlap; "blue" is in use.
struct Scene {
    CoverDesk desk{Desktop::Options()};
    CoverDesk::App& pink = desk.addApp("pink", 0xff00ff, 0xff00f0, {{200, 200, 800, 600}});
    CoverDesk::App& blue = desk.addApp("blue", 0x0000ff, 0x00ffff, {{900, 400, 700, 500}});

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

/// What the program, if there is one, and the server take while `action` runs.
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

/// Raises a window again and again, and takes the time until something stands directly above it.
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
            // Long enough that the next one finds the program asleep, at no fixed phase of its
            // tick.
            sleep(0.25 + 0.007 * i);
            while (std::unique_ptr<xcb_generic_event_t, FreeDeleter>(
                xcb_poll_for_event(connection_))) {
            }
            const auto asked = Clock::now();
            raise();
            waitForConfigure([this](const auto& event) { return event.window == frame_; });
            const auto raised = Clock::now();
            waitForConfigure([this](const auto& event) { return event.above_sibling == frame_; });
            const auto covered = Clock::now();
            fromRequest.push_back(milliseconds(covered - asked));
            fromEvent.push_back(milliseconds(covered - raised));
        }
        report(what + ", from the request", fromRequest);
        report(what + ", from the raise", fromEvent);
    }

    void stack(std::uint32_t mode) {
        xcb_configure_window(connection_, frame_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
        xcb_flush(connection_);
    }

  private:
    template <class Condition>
    void waitForConfigure(const Condition& isIt) {
        for (;;) {
            const std::unique_ptr<xcb_generic_event_t, FreeDeleter> event(
                xcb_wait_for_event(connection_));
            if (!event) throw std::runtime_error("the X server is gone");
            if ((event->response_type & 0x7F) == XCB_CONFIGURE_NOTIFY &&
                isIt(*reinterpret_cast<const xcb_configure_notify_event_t*>(event.get())))
                return;
        }
    }

    xcb_connection_t* connection_;
    xcb_window_t frame_;
};

void drag(Scene& scene, int seconds) {
    Screen hand(scene.desk.desktop.display());
    const auto window = scene.pink.windows[0];
    auto next = Clock::now();
    for (int i = 0; i < seconds * movesPerSecond; ++i) {
        // To and fro, ten pixels at a time.
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
            // An app that is left before its badge has the keyboard is hidden.
            sleep(0.6);
            scene.desk.activate(scene.blue);
        });
}

}  // namespace

/// `CoverMeasurements [SECONDS]`: how long it looks at a program at rest.
int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    adoptOrphans();
    const int restSeconds = argc > 1 ? std::atoi(argv[1]) : 60;
    measureRaising();
    measureRest(restSeconds);
    measureCovered(restSeconds);
    return 0;
}
