#include "OrvelSystem/Linux/BoundedBus.h"

#include <cstdint>

namespace OrvelSystem {

// The library's blocking calls wait for the handshake with the bus without a time limit. So every
// call is sent asynchronously, and `wait` processes the connection until the deadline.
BoundedBus::BoundedBus(Kind kind, std::chrono::milliseconds limit)
    : deadline_(std::chrono::steady_clock::now() + limit) {
    sd_bus* bus = nullptr;
    const int opened = kind == Kind::system ? sd_bus_open_system(&bus) : sd_bus_open_user(&bus);
    if (opened >= 0) bus_.reset(bus);
}

void BoundedBus::extend(std::chrono::milliseconds limit) {
    deadline_ = std::chrono::steady_clock::now() + limit;
}

int BoundedBus::answered(sd_bus_message* reply, void* data, sd_bus_error* /*error*/) {
    auto& pending = *static_cast<Pending*>(data);
    const bool good = sd_bus_message_is_method_error(reply, nullptr) <= 0 && pending.read(reply);
    pending.outcome = good ? Outcome::succeeded : Outcome::failed;
    return 0;
}

BoundedBus::Outcome BoundedBus::wait(Pending& pending) {
    while (pending.outcome == Outcome::unanswered) {
        const int progress = sd_bus_process(bus_.get(), nullptr);
        if (progress < 0) return Outcome::failed;
        if (progress > 0) continue;
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
            deadline_ - std::chrono::steady_clock::now());
        if (left.count() <= 0 || sd_bus_wait(bus_.get(), left.count()) < 0) break;
    }
    if (pending.outcome != Outcome::unanswered) return pending.outcome;
    std::uint64_t queued = 0;
    const bool sent = sd_bus_is_ready(bus_.get()) > 0 &&
                      sd_bus_get_n_queued_write(bus_.get(), &queued) >= 0 && queued == 0;
    return sent ? Outcome::unanswered : Outcome::notSent;
}

}  // namespace OrvelSystem
