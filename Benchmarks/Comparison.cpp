// Compares Karvo with other programs on the same X server: with lockers, and with a program that
// changes the picture according to the focus. It measures from outside, as another X client.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "CoverDesk.h"
#include "Measuring.h"
#include "ScreenWatcher.h"

using namespace DesktopTest;
using namespace Measuring;

namespace {

constexpr std::chrono::milliseconds settling{700};

void settle() {
    std::this_thread::sleep_for(settling);
}

void await(const std::function<bool()>& holds, const std::string& what) {
    const auto end = Clock::now() + std::chrono::seconds(20);
    while (!holds())
        if (Clock::now() > end) throw std::runtime_error(what);
}

/// Collects the measured values and prints them.
class Table {
  public:
    void add(const std::string& what, const std::string& program, double value) {
        const auto same = [&](const Row& row) {
            return row.what == what && row.program == program;
        };
        auto row = std::ranges::find_if(rows_, same);
        if (row == rows_.end()) {
            // Keep rows for the same quantity together.
            const auto last = std::ranges::find(rows_.rbegin(), rows_.rend(), what, &Row::what);
            row =
                rows_.insert(last == rows_.rend() ? rows_.end() : last.base(), {what, program, {}});
        }
        row->values.push_back(value);
    }

    std::string markdown() {
        std::string text =
            "| | program | median | quartiles | smallest to largest | runs |\n"
            "|---|---|---|---|---|---|\n";
        std::string last;
        for (auto& row : rows_) {
            std::ranges::sort(row.values);
            text +=
                fmt::format("| {} | {} | {:.3g} | {:.3g} to {:.3g} | {:.3g} to {:.3g} | {} |\n",
                            row.what == last ? "" : row.what, row.program, row.at(0.5),
                            row.at(0.25), row.at(0.75), row.at(0), row.at(1), row.values.size());
            last = row.what;
        }
        return text;
    }

    nlohmann::json json() const {
        auto list = nlohmann::json::array();
        for (const auto& row : rows_)
            list.push_back({{"what", row.what},
                            {"program", row.program},
                            {"median", row.at(0.5)},
                            {"quartiles", {row.at(0.25), row.at(0.75)}},
                            {"values", row.values}});
        return list;
    }

  private:
    struct Row {
        std::string what;
        std::string program;
        std::vector<double> values;  // sorted by `markdown`

        double at(double part) const {
            return values[static_cast<std::size_t>(
                std::lround(part * static_cast<double>(values.size() - 1)))];
        }
    };

    std::vector<Row> rows_;
};

using Pids = std::vector<pid_t>;

pid_t server() {
    return descendantsRunning("/usr/bin/Xvfb").at(0);
}

/// The process and all its descendants.
Pids family(pid_t pid) {
    Pids pids{pid};
    for (std::size_t i = 0; i < pids.size(); ++i) {
        std::ifstream children(fmt::format("/proc/{0}/task/{0}/children", pids[i]));
        for (pid_t child = 0; children >> child;) pids.push_back(child);
    }
    return pids;
}

double sum(const Pids& pids, const std::function<double(pid_t)>& of) {
    return std::transform_reduce(pids.begin(), pids.end(), 0.0, std::plus<>(), of);
}

double share(const Pids& pids) {
    return sum(pids, [](pid_t pid) { return memoryOf(pid).share; });
}

double seconds(const Pids& pids) {
    return sum(pids, secondsUsed);
}

Pids processes(const Karvo& karvo) {
    Pids pids = karvo.apps();
    std::ranges::copy(karvo.guards(), std::back_inserter(pids));
    return pids;
}

/// A program that locks and unlocks the screen.
struct Locker {
    std::string name;
    std::function<void()> lock;
    std::function<Pids()> processes;
    std::function<void()> unlock;
};

void compareLockers(Table& table, int runs, int restSeconds) {
    Desktop desktop;
    auto& screen = desktop.screen();
    // No locker uses these colours.
    screen.paintBackground(checkerboard(0xF0F0E0, 0x101820));
    screen.movePointer(960, 700);
    screen.sync();
    // Request reduced motion, because the other lockers have no fade either.
    const Portal portal(desktop.sessionBus(), desktop.environment(), desktop.folder() / "portal");
    Karvo karvo(desktop);
    if (!karvo.waitUntilReady()) throw std::runtime_error("Karvo is not ready");
    settle();
    ScreenWatcher watcher(screen);
    table.add("memory while nothing is locked, MB", "Karvo with its guard",
              share(processes(karvo)));

    std::unique_ptr<Process> other;
    const auto started = [&](Arguments arguments) {
        const std::string name = arguments.front();
        return Locker{name,
                      [&, arguments] {
                          other = std::make_unique<Process>(arguments, desktop.environment(),
                                                            desktop.folder() / "locker.log");
                      },
                      [&] { return family(other->pid()); },
                      [&] {
                          // Some of its processes are in other process groups.
                          const Pids pids = family(other->pid());
                          other.reset();
                          for (const pid_t pid : pids) kill(pid, SIGKILL);
                      }};
    };
    const std::vector<Locker> lockers{{"Karvo",
                                       [&] {
                                           screen.keyDown(XK_Super_L);
                                           screen.keyDown(XK_l);
                                           xcb_flush(screen.connection());
                                       },
                                       [&] { return processes(karvo); },
                                       [&] {
                                           screen.type(Desktop::password);
                                           screen.press({XK_Return});
                                       }},
                                      started({"i3lock", "-n", "-c", "204060"}),
                                      started({"xsecurelock"})};
    const auto lock = [&](const Locker& locker, bool isRecorded) {
        const auto start = Clock::now();
        locker.lock();
        await([&] { return watcher.isCovered(); }, locker.name + " does not cover");
        const double covered = Measuring::milliseconds(Clock::now() - start);
        await([&] { return watcher.isGrabbed(); }, locker.name + " does not grab");
        const double grabbed = Measuring::milliseconds(Clock::now() - start);
        if (locker.name == "Karvo") {
            screen.keyUp(XK_l);
            screen.keyUp(XK_Super_L);
        }
        settle();
        if (!isRecorded) return;
        table.add("key or start to every pixel covered, ms", locker.name, covered);
        table.add("key or start to covered and input grabbed, ms", locker.name, grabbed);
        table.add("memory while locked, MB", locker.name, share(locker.processes()));
    };
    const auto unlock = [&](const Locker& locker) {
        locker.unlock();
        await([&] { return watcher.isOpen() && !watcher.isGrabbed(); },
              locker.name + " does not go");
        settle();
    };
    for (int run = -1; run < runs; ++run)
        for (const auto& locker : lockers) {
            lock(locker, run >= 0);  // the first one only warms up
            unlock(locker);
        }
    for (const auto& locker : lockers) {
        lock(locker, false);
        const Pids pids = locker.processes();
        const double used = seconds(pids);
        const double served = secondsUsed(server());
        std::this_thread::sleep_for(std::chrono::seconds(restSeconds));
        const auto span = fmt::format(" in {} s at rest, locked, ms", restSeconds);
        table.add("its processor time" + span, locker.name, 1000 * (seconds(pids) - used));
        table.add("the X server's" + span, locker.name, 1000 * (secondsUsed(server()) - served));
        unlock(locker);
    }
}

/// A program that marks the focused window visually.
struct Marker {
    std::string name;
    std::function<void()> begin;
    std::function<Pids()> processes;
    std::function<void()> end;
};

void compareFocus(Table& table, int runs) {
    CoverDesk desk{Desktop::Options()};
    auto& pink = desk.addApp("pink", 0xff00ff, 0xff00f0, {{200, 200, 500, 300}});
    auto& blue = desk.blue();
    desk.addPortal();
    desk.activate(pink);
    desk.start();
    const Area inPink{300, 300, 8, 8};
    const Area inBlue{1200, 500, 8, 8};
    const auto isClear = [&](bool isBlue) {
        return desk.shown(isBlue ? blue : pink, isBlue ? inBlue : inPink) == 1;
    };
    // A window without the focus does not show its own colours.
    const auto marks = [&](bool isBlue) { return isClear(isBlue) && !isClear(!isBlue); };

    std::unique_ptr<Process> picom;
    const auto started = [&](const std::string& name, const Arguments& more) {
        Arguments arguments{"picom", "--config", "/dev/null", "--backend", "xrender"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Marker{name,
                      [&, arguments] {
                          picom = std::make_unique<Process>(arguments, desk.desktop.environment(),
                                                            desk.desktop.folder() / "picom.log");
                      },
                      [&] { return family(picom->pid()); }, [&] { picom.reset(); }};
    };
    const std::vector<Marker> markers{
        {"none", [] {}, [] { return Pids(); }, [] {}},
        {"Karvo, Focus Blur", [&] { desk.karvo().open("karvo://focus/on"); },
         [&] { return processes(desk.karvo()); }, [&] { desk.karvo().open("karvo://focus/off"); }},
        started("picom, inactive windows dimmed", {"--inactive-dim", "0.6"}),
        started("picom, inactive windows translucent before a blur",
                {"--inactive-opacity", "0.6", "--blur-background", "--blur-method", "gaussian",
                 "--blur-size", "20"})};
    bool isBlue = false;
    for (int run = 0; run < runs; ++run) {
        for (const auto& marker : markers) {
            const bool isMarked = marker.name != "none";
            marker.begin();
            if (isMarked) await([&] { return marks(isBlue); }, marker.name + " does not begin");
            settle();
            // Measure the time in one change and the costs in another, since sampling costs server
            // time.
            for (const bool isTimed : {true, false}) {
                isBlue = !isBlue;
                const Pids pids = marker.processes();
                const double used = seconds(pids);
                const double served = secondsUsed(server());
                const auto asked = Clock::now();
                desk.screen().activate((isBlue ? blue : pink).windows[0]);
                desk.screen().sync();
                if (isTimed && isMarked) {
                    await([&] { return marks(isBlue); }, marker.name + " does not follow");
                    table.add("focus asked for to the changed picture, ms", marker.name,
                              Measuring::milliseconds(Clock::now() - asked));
                }
                settle();
                if (isTimed) continue;
                if (isMarked) {
                    if (!marks(isBlue)) throw std::runtime_error(marker.name + " does not follow");
                    table.add("its processor time for one change, ms", marker.name,
                              1000 * (seconds(pids) - used));
                }
                table.add("the X server's for one change and 0.7 s, ms", marker.name,
                          1000 * (secondsUsed(server()) - served));
            }
            marker.end();
            await([&] { return isClear(true) && isClear(false); }, marker.name + " does not end");
        }
    }
}

std::string loadNow() {
    std::string one;
    std::ifstream("/proc/loadavg") >> one;
    return one;
}

std::string today() {
    const std::time_t now = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "%F %R", std::localtime(&now));
    return text;
}

}  // namespace

/// `Comparison RUNS SECONDS JSON`: prints the table, and writes it with all values to the file
/// JSON. SECONDS is the time for which each locker is observed at rest.
int main(int argc, char** argv) {
    if (argc != 4) return fmt::print(stderr, "Comparison RUNS SECONDS JSON\n"), 2;
    return run([&] {
        const int runs = std::max(1, std::atoi(argv[1]));
        Table table;
        const std::string began = today();
        const std::string loadBefore = loadNow();
        compareLockers(table, runs, std::max(1, std::atoi(argv[2])));
        compareFocus(table, runs);
        const std::string loadAfter = loadNow();
        fmt::print("{}; load of the machine {} before and {} after.\n\n{}", began, loadBefore,
                   loadAfter, table.markdown());
        std::ofstream(argv[3]) << nlohmann::json{{"date", began},
                                                 {"load", {loadBefore, loadAfter}},
                                                 {"measures", table.json()}}
                                      .dump(2)
                               << '\n';
    });
}
