#include "OrvelUpdates/BackgroundChecks.h"

#include <utility>

namespace OrvelUpdates {

BackgroundChecks::BackgroundChecks(OrvelSystem::MainLoop& loop, Check check)
    : loop_(loop), check_(std::move(check)) {}

OrvelSystem::Task<UpdateResult> BackgroundChecks::run(UpdateChecker::OnProgress onProgress) {
    OrvelSystem::Arrival<UpdateResult> arrival;
    auto finish = lifetime_.guard(arrival.promise());
    auto tell = lifetime_.guard(std::move(onProgress));
    const auto thread = threads_.emplace(threads_.end(), [this, finish,
                                                          tell](const std::stop_token& stop) {
        auto result = check_(stop, [this, tell](const DownloadProgress& progress) {
            loop_.post([tell, progress]() mutable { tell(progress); });
        });
        loop_.post([finish, result = std::move(result)]() mutable { finish(std::move(result)); });
    });
    UpdateResult result = co_await arrival;
    // It has nothing left to do, so the join that this means takes no time.
    threads_.erase(thread);
    co_return result;
}

void BackgroundChecks::cancel() {
    for (auto& thread : threads_) thread.request_stop();
}

}  // namespace OrvelUpdates
