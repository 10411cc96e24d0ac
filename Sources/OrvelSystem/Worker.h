#pragma once

#include <thread>
#include <utility>

#include "OrvelSystem/Task.h"

namespace OrvelSystem {

/// Runs a call that blocks on a thread of its own and gives its result on the main loop.
/// A call that never returns costs its thread and nothing else: nobody joins it.
/// `work` must own all that it uses, and the loop must outlive every call that returns.
template <class Work>
auto runBlocking(MainLoop& loop, Work work) -> Task<decltype(work())> {
    using Result = decltype(work());
    Arrival<Result> arrival;
    std::thread([&loop, work = std::move(work), finish = arrival.promise()]() mutable {
        auto result = work();
        loop.post([finish = std::move(finish), result = std::move(result)]() mutable {
            finish(std::move(result));
        });
    }).detach();
    Result result = co_await arrival;
    co_return result;
}

}  // namespace OrvelSystem
