#include "OrvelSystem/StopToken.h"

using namespace OrvelSystem;

TEST(StopToken, CallsEachCallbackOnceAndNoneThatWasDropped) {
    const StopSource source;
    int kept = 0;
    int dropped = 0;
    const StopCallback first(source.token(), [&kept] { ++kept; });
    std::optional<StopCallback> second(std::in_place, source.token(), [&dropped] { ++dropped; });
    second.reset();
    const StopCallback without(StopToken(), [&kept] { kept += 100; });
    source.requestStop();
    source.requestStop();
    const StopCallback late(source.token(), [&kept] { kept += 10; });
    EXPECT_EQ(kept, 11);
    EXPECT_EQ(dropped, 0);
}

// The callback may use objects that its owner destroys right after it.
TEST(StopToken, DroppingACallbackWaitsForItsCall) {
    const StopSource source;
    std::atomic<bool> entered = false;
    std::atomic<bool> mayEnd = false;
    std::atomic<bool> ended = false;
    std::optional<StopCallback> callback(std::in_place, source.token(), [&] {
        entered = true;
        entered.notify_one();
        mayEnd.wait(false);
        ended = true;
    });
    std::thread stopper([&source] { source.requestStop(); });
    entered.wait(false);
    std::thread releaser([&mayEnd] {
        std::this_thread::yield();
        mayEnd = true;
        mayEnd.notify_one();
    });
    callback.reset();
    EXPECT_TRUE(ended);
    stopper.join();
    releaser.join();
}
