#include "OrvelUpdates/BackgroundChecks.h"

#include <utility>

namespace OrvelUpdates {

BackgroundChecks::BackgroundChecks(OrvelSystem::MainLoop& loop, Check check)
    : loop_(loop), check_(std::move(check)) {}

BackgroundChecks::Thread::~Thread() {
    stop.requestStop();
    thread.join();
}

OrvelSystem::Task<UpdateResult> BackgroundChecks::run(UpdateChecker::OnProgress onProgress) {
    OrvelSystem::Arrival<UpdateResult> arrival;
    auto finish = lifetime_.guard(arrival.promise());
    auto tell = lifetime_.guard(std::move(onProgress));
    const auto running = threads_.emplace(threads_.end());
    running->thread = std::thread([this, finish, tell, stop = running->stop.token()] {
        auto result = check_(stop, [this, tell](const DownloadProgress& progress) {
            loop_.post([tell, progress]() mutable { tell(progress); });
        });
        loop_.post([finish, result = std::move(result)]() mutable { finish(std::move(result)); });
    });
    UpdateResult result = co_await arrival;
    // The thread has finished its work, so the join in the destructor does not block.
    threads_.erase(running);
    co_return result;
}

void BackgroundChecks::cancel() {
    for (const auto& running : threads_) running.stop.requestStop();
}

}  // namespace OrvelUpdates
