#include "OrvelCore/Observed.h"
#include "OrvelSystem/Task.h"
#include "OrvelSystem/Timeout.h"
#include "OrvelSystem/Worker.h"

#include "Support/MainLoopChecks.h"
#include "Support/ManualLoop.h"

namespace {

using Log = std::vector<std::string>;

/// Logs its destruction, which must happen to everything in the frame of a dropped task.
struct Witness {
    Log* log;
    std::string name;
    Witness(Log& to, std::string called) : log(&to), name(std::move(called)) {}
    Witness(Witness&& other) noexcept : log(std::exchange(other.log, nullptr)), name(other.name) {}
    Witness& operator=(Witness&&) = delete;
    ~Witness() {
        if (log) log->push_back("~" + name);
    }
};

Task<int> valueAfter(MainLoop& loop, double seconds, int value, Log& log) {
    const Witness frame(log, "frame");
    co_await Sleep(loop, seconds);
    log.push_back("slept");
    co_return value;
}

Task<void> note(MainLoop& loop, Task<int> task, Log& log) {
    const int value = co_await task;
    log.push_back(std::to_string(value) + " at " + std::to_string(std::lround(loop.uptime())));
}

Task<void> noteTimeout(MainLoop& loop, double limit, Task<int> operation, Log& log) {
    const std::optional<int> value = co_await Timeout::run(loop, limit, std::move(operation));
    log.push_back(value ? std::to_string(*value) : "nothing");
}

Task<void> noteArrival(Arrival<std::string>& arrival, Log& log) {
    std::string value = co_await arrival;
    log.push_back(value);
}

Task<void> noteText(std::string text, Log& log) {
    log.push_back(text);
    co_return;
}

}  // namespace

TEST(Task, StartsInALaterTurnAndInOrder) {
    ManualLoop loop;
    Log log;
    spawn(loop, noteText("first", log));
    spawn(loop, noteText("second", log));
    EXPECT_TRUE(log.empty());
    loop.drain();
    EXPECT_THAT(log, ElementsAre("first", "second"));
}

TEST(Task, GivesItsValueToItsAwaiterWhenTheTimeHasCome) {
    ManualLoop loop(1000);
    Log log;
    spawn(loop, note(loop, valueAfter(loop, 2, 7, log), log));
    loop.advance(1);
    EXPECT_TRUE(log.empty());
    loop.advance(1);
    EXPECT_THAT(log, ElementsAre("slept", "~frame", "7 at 1002"));
    EXPECT_EQ(loop.timerCount(), 0U);
}

TEST(Task, EndsWithTheLoopThatItWaitsOn) {
    Log log;
    {
        ManualLoop loop;
        spawn(loop, note(loop, valueAfter(loop, 5, 1, log), log));  // suspended in a sleep
        spawn(loop, noteTimeout(loop, 9, valueAfter(loop, 6, 2, log), log));
        loop.advance(1);
        spawn(loop, note(loop, valueAfter(loop, 1, 3, log), log));  // never started
    }
    EXPECT_THAT(log, ElementsAre("~frame", "~frame"));
}

TEST(Task, DroppedUnawaitedItNeverRuns) {
    ManualLoop loop;
    Log log;
    { const Task<int> dropped = valueAfter(loop, 0, 1, log); }
    loop.advance(1);
    EXPECT_TRUE(log.empty());
}

TEST(Timeout, GivesTheValueOnlyBeforeTheLimit) {
    struct Case {
        double operation;
        double limit;
        Log expected;
    };
    for (const auto& c : std::vector<Case>{
             {1, 2, {"slept", "7", "~frame"}},
             {3, 2, {"nothing", "slept", "~frame"}},
             {0, 2, {"slept", "7", "~frame"}},
             {1, 0, {"nothing", "slept", "~frame"}},
         }) {
        ManualLoop loop;
        Log log;
        spawn(loop, noteTimeout(loop, c.limit, valueAfter(loop, c.operation, 7, log), log));
        loop.advance(10);
        EXPECT_THAT(log, testing::UnorderedElementsAreArray(c.expected));
        EXPECT_EQ(log.front() == "nothing", c.operation > c.limit);
        EXPECT_EQ(loop.timerCount(), 0U);
    }
}

TEST(Arrival, TheFirstValueCounts) {
    ManualLoop loop;
    for (const bool isEarly : {true, false}) {
        Log log;
        Arrival<std::string> arrival;
        const auto promise = arrival.promise();
        if (isEarly) promise("one");
        spawn(loop, noteArrival(arrival, log));
        loop.drain();
        promise("one");
        promise("two");
        EXPECT_THAT(log, ElementsAre("one"));
    }
}

Task<int> valueOf(Arrival<int>& arrival) {
    const int value = co_await arrival;
    co_return value;
}

TEST(Arrival, MayOutliveTheTaskThatAwaitsIt) {
    Arrival<int> arrival;
    Log log;
    {
        ManualLoop loop;
        spawn(loop, note(loop, valueOf(arrival), log));
        loop.drain();
    }
    arrival.promise()(7);
    EXPECT_TRUE(log.empty());
}

TEST(Worker, BringsTheResultBackToTheLoop) {
    ManualLoop loop;
    Log log;
    const auto here = std::this_thread::get_id();
    std::atomic<bool> isElsewhere = false;
    spawn(loop, note(loop,
                     runBlocking(loop,
                                 [&, here] {
                                     isElsewhere = std::this_thread::get_id() != here;
                                     return 7;
                                 }),
                     log));
    EXPECT_TRUE(eventually([&] { loop.drain(); }, [&] { return !log.empty(); }));
    EXPECT_TRUE(isElsewhere);
    EXPECT_THAT(log, ElementsAre(testing::StartsWith("7 ")));
}

TEST(Observed, AnObserverMayEndItselfAndOthersAndWriteTheField) {
    Observed<int> field(0);
    Log log;
    Subscription self, other, late;
    self = field.observe([&](int value) {
        const Witness body(log, "self");  // still valid after the observation has ended
        self = Subscription();
        other = Subscription();
        late = field.observe([&](int v) { log.push_back("late " + std::to_string(v)); });
        log.push_back("self " + std::to_string(value));
        field.set(value + 10);
    });
    other = field.observe([&](int) { log.push_back("other"); });
    field.set(1);
    EXPECT_EQ(field.get(), 11);
    EXPECT_THAT(log, ElementsAre("self 1", "late 11", "~self"));
}

TEST(Observed, AnObservationMayOutliveItsField) {
    Subscription observation;
    {
        Observed<int> field;
        observation = field.observe([](int) {});
    }
    observation = Subscription();
}
