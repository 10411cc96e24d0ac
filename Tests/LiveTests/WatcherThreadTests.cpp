#include "OrvelCovers/WindowWatcher.h"
#include "OrvelSystem/WindowServer.h"

#include "Desktop/Eventually.h"
#include "MirrorDesktop.h"

namespace {

constexpr std::chrono::milliseconds manyPolls{300};

struct WatcherThread : testing::Test {
    std::mutex lock;
    WindowWatcher::Snapshot screen{{1, 2, 3}, {{2, {0, 0, 100, 100}}}};
    std::atomic<bool> option = false;
    std::atomic<int> reports = 0;

    WindowWatcher::Snapshot now() {
        const std::lock_guard guard(lock);
        return screen;
    }
    void change(const std::function<void(WindowWatcher::Snapshot&)>& f) {
        const std::lock_guard guard(lock);
        f(screen);
    }
    WindowWatcher::Reads polled() {
        return {.numbers = [this] { return now().numbers; },
                .bounds = [this](const auto& /*numbers*/) { return now().covered; },
                .button = [] { return false; },
                .option = [this] { return option.load(); }};
    }
};

TEST_F(WatcherThread, PollsWithoutNotifications) {
    WindowWatcher watcher(polled(), [this] { ++reports; });
    watcher.start();
    watcher.start();
    watcher.publish(now());
    EXPECT_TRUE(stays([this] { return reports == 0; }, manyPolls));
    option = true;
    EXPECT_TRUE(eventually([this] { return reports == 1; }));
    watcher.publish(now());
    change([](auto& windows) { windows.covered[2].width = 1; });
    EXPECT_TRUE(eventually([this] { return reports == 2; }));
}

TEST_F(MirrorTest, AWatcherKeepsItsReceiverUpToDate) {
    auto* const c = screen().connection();
    std::vector<xcb_window_t> windows;
    for (int i = 0; i < 20; ++i) {
        windows.push_back(make({i * 10, i * 10, 100, 100}, true));
        xcb_map_window(c, windows.back());
    }
    std::atomic<bool> reported = false;
    WindowWatcher::Snapshot known;
    WindowWatcher watcher(WindowWatcher::Reads::live(), [&] { reported = true; });
    const auto sample = [&] {
        known = {};
        for (const auto& window : WindowServer::onScreenWindows()) {
            known.numbers.push_back(window.number);
            known.covered[window.number] = window.bounds;
        }
        watcher.publish(known);
    };
    for (std::uint32_t round = 0; round < 20; ++round) {
        if (round % 2 == 0) watcher.start();
        sample();
        for (std::uint32_t i = 0; i < windows.size(); ++i) {
            const std::uint32_t values[] = {round * 7 + i, round + i * 11, XCB_STACK_MODE_ABOVE};
            xcb_configure_window(
                c, windows[(i * 7 + round) % windows.size()],
                XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_STACK_MODE, values);
        }
        screen().sync();
        // The receiver samples only after a report.
        ASSERT_TRUE(eventually([&] {
            if (reported.exchange(false)) sample();
            const auto truth = asked();
            return std::ranges::equal(truth, known.numbers, {}, &WindowInfo::number) &&
                   std::ranges::all_of(truth, [&](const auto& window) {
                       return known.covered.at(window.number) == window.bounds;
                   });
        }));
        if (round % 2 == 1) watcher.stop();
    }
}

}  // namespace
