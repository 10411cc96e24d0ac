#include <gmock/gmock.h>

#include "OrvelCovers/PeekDetector.h"
#include "OrvelCovers/WindowWatcher.h"

using namespace OrvelCovers;

namespace {

struct WindowWatcherTest : testing::Test {
    WindowWatcher::Snapshot screen{{1, 2, 3}, {{2, {0, 0, 100, 100}}}};
    bool button = false, option = false;
    int reads = 0, reports = 0;
    WindowWatcher watcher{{.numbers = [this] { return ++reads, screen.numbers; },
                           .bounds = [this](const auto&) { return ++reads, screen.covered; },
                           .button = [this] { return button; },
                           .option = [this] { return option; }},
                          [this] { ++reports; }};

    int reportsOfOneLook() {
        reports = 0;
        watcher.check();
        return reports;
    }
};

TEST_F(WindowWatcherTest, ReportsEachKindOfChangeOnceForEachSnapshot) {
    EXPECT_EQ(reportsOfOneLook(), 0) << "nothing to compare with";
    const std::function<void()> changes[] = {
        [&] { std::swap(screen.numbers[0], screen.numbers[1]); },
        [&] { screen.numbers.pop_back(); },
        [&] { screen.covered[2].x += 1; },
        [&] { screen.covered.clear(); },
    };
    for (const auto& change : changes) {
        watcher.publish(screen);
        EXPECT_EQ(reportsOfOneLook(), 0);
        change();
        EXPECT_EQ(reportsOfOneLook(), 1);
        reads = 0;
        EXPECT_EQ(reportsOfOneLook(), 0);
        EXPECT_EQ(reads, 0) << "while a report is pending";
        button = !button;
        EXPECT_EQ(reportsOfOneLook(), 1) << "a press does not wait";
        option = !option;
        EXPECT_EQ(reportsOfOneLook(), 1);
    }
}

TEST(PeekDetectorTest, CountsFromWhenOptionWentDown) {
    constexpr double noKey = 1e9;
    PeekDetector detector;
    EXPECT_FALSE(detector.isActive(true, true, noKey, 10));
    EXPECT_FALSE(detector.isActive(true, true, noKey, 10.2));
    EXPECT_TRUE(detector.isActive(true, true, noKey, 10.25));
    EXPECT_FALSE(detector.isActive(true, false, noKey, 10.5));
    EXPECT_FALSE(detector.isActive(true, true, 0.25, 10.5));
    EXPECT_FALSE(detector.isActive(false, false, noKey, 11));
    EXPECT_FALSE(detector.isActive(true, true, noKey, 11.2)) << "a new hold";
}

}  // namespace
