#include "OrvelAuth/Linux/FingerprintHold.h"

#include <algorithm>
#include <chrono>

namespace OrvelAuth {

using OrvelSystem::BoundedBus;

namespace {

constexpr char service[] = "net.reactivated.Fprint";
constexpr char deviceInterface[] = "net.reactivated.Fprint.Device";
// The service may have to be started, and a claim opens the reader. This must use only the smaller
// part of the password check's own time limit.
constexpr std::chrono::milliseconds busTimeout{1500};

bool asksForFinger(const PAMStack& stack) {
    return std::ranges::find(stack.authentication, "pam_fprintd.so", &PAMUse::module) !=
           stack.authentication.end();
}

}  // namespace

FingerprintHold::FingerprintHold(const PAMStack& stack) {
    if (!asksForFinger(stack)) return;
    bus_.emplace(BoundedBus::Kind::system, busTimeout);
    std::vector<std::string> found;
    bus_->call(
        {service, "/net/reactivated/Fprint/Manager", "net.reactivated.Fprint.Manager",
         "GetDevices"},
        [&found](sd_bus_message* reply) {
            if (sd_bus_message_enter_container(reply, 'a', "o") <= 0) return false;
            const char* path = nullptr;
            while (sd_bus_message_read_basic(reply, 'o', &path) > 0) found.emplace_back(path);
            return true;
        },
        "");
    for (const auto& path : found) {
        const auto outcome = bus_->call(
            {service, path.c_str(), deviceInterface, "Claim"}, [](sd_bus_message*) { return true; },
            "s", "");
        if (outcome == BoundedBus::Outcome::succeeded) readers_.push_back(path);
    }
}

// Closing the connection releases the readers too, but only after the service has noticed it.
FingerprintHold::~FingerprintHold() {
    if (readers_.empty()) return;
    bus_->extend(busTimeout);
    for (const auto& path : readers_) {
        bus_->call(
            {service, path.c_str(), deviceInterface, "Release"},
            [](sd_bus_message*) { return true; }, "");
    }
}

}  // namespace OrvelAuth
