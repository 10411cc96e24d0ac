#pragma once

#include <atomic>
#include <thread>
#include <utility>

#include "OrvelSystem/CurrentThread.h"
#include "OrvelSystem/Task.h"

namespace OrvelSystem {

/// Number of `runBlocking` calls that have not returned yet. While it is not 0, the program must
/// exit without running the destructors of static objects and libraries, which the calls still use.
inline std::atomic<int> blockingCalls = 0;

/// Runs a blocking call for which the user waits on its own thread, and returns its result on the
/// main loop. A call that never returns costs only its thread, which is never joined. A result that
/// arrives after the loop has been destroyed is discarded. `work` must own everything that it uses.
template <class Work>
auto runBlocking(MainLoop& loop, Work work) -> Task<decltype(work())> {
    using Result = decltype(work());
    Arrival<Result> arrival;
    ++blockingCalls;
    std::thread([post = loop.poster(), work = std::move(work),
                 finish = arrival.promise()]() mutable {
        CurrentThread::describe("worker", CurrentThread::Urgency::userWaits);
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
