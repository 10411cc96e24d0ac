#include "OrvelUpdates/UpdateAlarm.h"

#include <algorithm>
#include <utility>

namespace OrvelUpdates {

UpdateAlarm::UpdateAlarm(OrvelSystem::MainLoop& loop, std::function<double()> continuousClock,
                         std::function<OrvelCore::Date()> now)
    : loop_(loop), continuousClock_(std::move(continuousClock)), now_(std::move(now)) {}

void UpdateAlarm::set(OrvelCore::Date date, std::function<void()> call) {
    due_ = continuousClock_() + OrvelCore::secondsBetween(now_(), date);
    call_ = std::move(call);
    wait();
}

void UpdateAlarm::wait() {
    nap_ = loop_.after(std::min(due_ - continuousClock_(), longestNap), [this] { wake(); });
}

void UpdateAlarm::wake() {
    if (continuousClock_() < due_)
        wait();
    else
        std::exchange(call_, nullptr)();
}

}  // namespace OrvelUpdates
