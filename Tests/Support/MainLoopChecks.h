#pragma once

#include "OrvelSystem/MainLoop.h"

/// Calls `turn` until `holds` returns true. Returns false if it does not within a minute.
inline bool eventually(const std::function<void()>& turn, const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) return false;
        turn();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// Checks the timer guarantees of every main loop. `turn` lets some time pass.
inline void checkTimers(MainLoop& loop, const std::function<void()>& turn) {
    int ticks = 0;
    Timer repeating;
    repeating = loop.every(0.001, [&] {
        if (++ticks == 2) repeating.cancel();
    });
    int shots = 0;
    Timer once;
    once = loop.after(0, [&] {
        ++shots;
        once = {};
    });
    int replacements = 0;
    Timer replaced;
    replaced = loop.after(0.001, [&] { replaced = loop.after(0.001, [&] { ++replacements; }); });
    bool cancelledRan = false;
    Timer cancelled = loop.after(0.001, [&] { cancelledRan = true; });
    cancelled.cancel();
    {
        const Timer dropped = loop.after(0.001, [&] { cancelledRan = true; });
    }
    bool detachedRan = false;
    loop.after(0.002, [&] { detachedRan = true; }).detach();
    EXPECT_TRUE(eventually(turn, [&] { return replacements == 1 && ticks == 2 && detachedRan; }));
    for (int i = 0; i < 5; ++i) turn();
    EXPECT_EQ(ticks, 2);
    EXPECT_EQ(shots, 1);
    EXPECT_EQ(replacements, 1);
    EXPECT_FALSE(cancelledRan);
}
