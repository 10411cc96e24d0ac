#include "OrvelCovers/CoverLoop.h"
#include "OrvelCovers/PeekDetector.h"

#include "Support/ManualLoop.h"

namespace {

constexpr Rect display{0, 0, 1000, 800};

struct CoverLoopTest : testing::Test {
    struct Surface final : CoverSurface {
        Surface(CoverLoopTest& owner, std::int64_t covered) : test(owner), window(covered) {}
        std::int64_t windowNumber() const override { return 1000 + window; }
        void place(const Rect& rect) override {
            test.covers[window] = rect;
            ++test.placements;
        }
        void order(std::int64_t /*above*/) override {}
        void show(bool /*fade*/) override {}
        void remove() override { test.covers.erase(window); }
        CoverLoopTest& test;
        std::int64_t window;
    };

    ManualLoop main;
    std::vector<WindowInfo> screen{{1, 10, 0, {100, 100, 200, 200}}, {2, 20, 0, {0, 0, 500, 500}}};
    std::vector<Rect> displays{display};
    std::optional<Point> peek;
    bool mouseDown = false;
    int lists = 0, orders = 0, bounds = 0;

    std::map<std::int64_t, Rect> covers;  // visible covers by window
    int placements = 0;
    std::vector<bool> running;
    WindowWatcher::Snapshot known;

    CoverController controller{[this](const CoverRequest& request) {
        return std::make_unique<Surface>(*this, request.window);
    }};
    TimerTicker ticker{main};
    CoverLoop loop{controller,
                   {.windows = [this] { return ++lists, screen; },
                    .windowNumbers =
                        [this] {
                            ++orders;
                            std::vector<std::int64_t> numbers;
                            for (const auto& window : screen) numbers.push_back(window.number);
                            return numbers;
                        },
                    .windowBounds =
                        [this](const std::vector<std::int64_t>& numbers) {
                            ++bounds;
                            std::map<std::int64_t, Rect> found;
                            for (const auto& window : screen) {
                                if (std::ranges::count(numbers, window.number) > 0)
                                    found[window.number] = window.bounds;
                            }
                            return found;
                        },
                    .displays = [this] { return displays; },
                    .activePID = [] { return std::nullopt; },
                    .peekPoint = [this] { return peek; },
                    .mouseDown = [this] { return mouseDown; },
                    .now = [this] { return main.uptime(); },
                    .ownPID = 99},
                   ticker};

    CoverLoopTest() {
        loop.onRunningChanged = [this](bool runs) { running.push_back(runs); };
        loop.onSampled = [this](auto snapshot) { known = std::move(snapshot); };
    }
    /// The number of full samples, bounds-only samples and reads of bounds in this many seconds.
    std::vector<int> costOf(double seconds) {
        lists = orders = bounds = 0;
        main.advance(seconds);
        return {lists, orders, bounds};
    }
    void move(double x) {
        screen[0].bounds.x = x;
        loop.somethingChanged();
    }
};

constexpr Rect tight(double x) {
    return {x - 1, 99, 202, 202};
}

TEST_F(CoverLoopTest, RunsWhileThereIsSomethingToProtectAndReadsNothingOtherwise) {
    loop.nudge();
    loop.somethingChanged();
    EXPECT_THAT(costOf(5), ElementsAre(0, 0, 0));

    loop.setLockedPIDs({10});
    EXPECT_THAT(covers, ElementsAre(Pair(1, tight(100))));
    EXPECT_THAT(known.numbers, ElementsAre(1, 2));
    EXPECT_THAT(known.covered, ElementsAre(Pair(1, screen[0].bounds)));
    loop.setPrivatePIDs({20});
    EXPECT_EQ(covers.size(), 2u);
    loop.setLockedPIDs({});
    EXPECT_THAT(running, ElementsAre(true));
    loop.setPrivatePIDs({});
    EXPECT_TRUE(covers.empty());
    EXPECT_THAT(running, ElementsAre(true, false));
    EXPECT_EQ(main.timerCount(), 0u);
    loop.nudge();
    EXPECT_EQ(main.timerCount(), 0u);
}

TEST_F(CoverLoopTest, AWindowCannotLeaveItsCoverAndGetsATightOneOnceItRests) {
    loop.setLockedPIDs({10});
    EXPECT_THAT(costOf(10), ElementsAre(20, 0, 0));

    move(130);
    EXPECT_EQ(covers[1], display);
    main.advance(0.1);
    EXPECT_EQ(covers[1], display);
    main.advance(0.11);
    EXPECT_EQ(covers[1], tight(130));
    main.advance(0.7);
    EXPECT_EQ(ticker.interval(), CoverLoop::fastInterval);
    main.advance(0.6);
    EXPECT_EQ(ticker.interval(), CoverLoop::restInterval);
}

TEST_F(CoverLoopTest, HoldsTheFastRateWithTwoCheapReadsATickWhileSomethingMayHappen) {
    loop.setLockedPIDs({10});
    const std::pair<std::function<void()>, std::function<void()>> causes[] = {
        {[&] { mouseDown = true; }, [&] { mouseDown = false; }},
        {[&] {
             peek = {600, 600};
         },
         [&] { peek.reset(); }},
    };
    for (const auto& [begin, end] : causes) {
        begin();
        loop.somethingChanged();
        // A peek causes one plan when it starts, and none while the pointer does not move.
        const auto cost = costOf(5);
        EXPECT_NEAR(cost[0], 10, 1);
        EXPECT_NEAR(cost[1], 90, 1);
        EXPECT_NEAR(cost[2], 90, 1);
        end();
        main.advance(0.1);
        EXPECT_EQ(ticker.interval(), CoverLoop::restInterval);
    }
    loop.nudge();
    // Full samples during the burst, and then the slow rate again.
    EXPECT_THAT(costOf(0.34), ElementsAre(6, 0, 0));
    main.advance(0.1);
    EXPECT_EQ(ticker.interval(), CoverLoop::restInterval);
}

TEST_F(CoverLoopTest, ACheapSampleFindsOutWhenItMustReadEverything) {
    loop.setLockedPIDs({10, 20});
    const std::function<void()> changes[] = {
        [&] { std::swap(screen[0], screen[1]); },
        [&] {
            screen.insert(screen.begin(), {3, 30, 0, {0, 0, 50, 50}});
        },
        [&] { screen.erase(screen.begin()); },
    };
    for (const auto& change : changes) {
        change();
        lists = 0;
        loop.somethingChanged();
        EXPECT_EQ(lists, 1);
        loop.somethingChanged();
        EXPECT_EQ(lists, 1);
    }
    screen.clear();
    loop.somethingChanged();
    EXPECT_TRUE(covers.empty());
}

TEST_F(CoverLoopTest, NewDisplaysLayEveryCoverOutAgain) {
    loop.setLockedPIDs({10});
    EXPECT_EQ(placements, 1);
    main.advance(1);
    EXPECT_EQ(placements, 1);
    displays.push_back({1000, 0, 1000, 800});
    main.advance(0.5);
    EXPECT_EQ(placements, 2);
}

TEST_F(CoverLoopTest, AnObserverOfASampleMayEndTheLoop) {
    loop.onTick = [this](const auto& windows) {
        if (windows.size() == 3) loop.setLockedPIDs({});
    };
    loop.setLockedPIDs({10});
    screen.push_back({3, 30, 0, {0, 0, 50, 50}});
    loop.somethingChanged();
    EXPECT_TRUE(covers.empty());
    EXPECT_EQ(main.timerCount(), 0u);
    EXPECT_THAT(running, ElementsAre(true, false));
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
