#pragma once

#include <atomic>
#include <thread>
#include <utility>

#include "OrvelSystem/Task.h"

namespace OrvelSystem {

/// Calls of `runBlocking` that have not returned yet. While there are any, the program must end
/// without the destructors of static objects and libraries, which the calls still use.
inline std::atomic<int> blockingCalls = 0;

/// Runs a call that blocks on a thread of its own and gives its result on the main loop.
/// A call that never returns costs its thread and nothing else: nobody joins it. A result that
/// comes after the end of the loop is dropped. `work` must own all that it uses.
template <class Work>
auto runBlocking(MainLoop& loop, Work work) -> Task<decltype(work())> {
    using Result = decltype(work());
    Arrival<Result> arrival;
    ++blockingCalls;
    std::thread([post = loop.poster(), work = std::move(work),
                 finish = arrival.promise()]() mutable {
        auto result = work();
        post([finish = std::move(finish), result = std::move(result)]() mutable {
            finish(std::move(result));
        });
        --blockingCalls;
    }).detach();
    Result result = co_await arrival;
    co_return result;
}

}  // namespace OrvelSystem
