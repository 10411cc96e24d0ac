#include "OrvelUpdates/BackgroundChecks.h"

#include <utility>

namespace OrvelUpdates {

BackgroundChecks::BackgroundChecks(OrvelSystem::MainLoop& loop, Check check)
    : loop_(loop), check_(std::move(check)) {}

OrvelSystem::Task<UpdateResult> BackgroundChecks::run() {
    OrvelSystem::Arrival<UpdateResult> arrival;
    auto finish = lifetime_.guard(arrival.promise());
    const auto thread =
        threads_.emplace(threads_.end(), [this, finish](const std::stop_token& stop) {
            loop_.post([finish, result = check_(stop)]() mutable { finish(std::move(result)); });
        });
    UpdateResult result = co_await arrival;
    // It has nothing left to do, so the join that this means takes no time.
    threads_.erase(thread);
    co_return result;
}

}  // namespace OrvelUpdates
