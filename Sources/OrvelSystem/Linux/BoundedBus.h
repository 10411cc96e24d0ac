#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <systemd/sd-bus.h>

namespace OrvelSystem {

/// Calls on a message bus for code that has no main loop or must not wait for it. All calls of one
/// object share one time limit, however the bus and its services behave. Use each object on one
/// thread only.
class BoundedBus {
  public:
    enum class Kind { system, session };
    /// `failed`: an error reply, a reply that `Read` rejects, or a broken connection. `unanswered`:
    /// the call was sent, but no reply arrived in time. `notSent`: the call did not leave this
    /// process.
    enum class Outcome { succeeded, failed, unanswered, notSent };
    /// Reads the required values from the reply; false makes the outcome `failed`.
    using Read = std::function<bool(sd_bus_message* reply)>;

    BoundedBus(Kind kind, std::chrono::milliseconds limit);

    /// Sets a new time limit, counted from now, for the following calls.
    void extend(std::chrono::milliseconds limit);

    struct Method {
        const char* service;
        const char* path;
        const char* interface;
        const char* name;
    };
    /// `types` and `arguments` are those of `sd_bus_call_method`.
    Outcome call(const Method& method, const Read& read, const char* types, auto... arguments) {
        if (!bus_) return Outcome::notSent;
        Pending pending{read, Outcome::unanswered};
        sd_bus_slot* slot = nullptr;
        if (sd_bus_call_method_async(bus_.get(), &slot, method.service, method.path,
                                     method.interface, method.name, answered, &pending, types,
                                     arguments...) < 0)
            return Outcome::notSent;
        const std::unique_ptr<sd_bus_slot, decltype(&sd_bus_slot_unref)> owned(slot,
                                                                               sd_bus_slot_unref);
        return wait(pending);
    }

  private:
    struct Pending {
        const Read& read;
        Outcome outcome;
    };
    static int answered(sd_bus_message* reply, void* data, sd_bus_error* error);
    Outcome wait(Pending& pending);

    std::chrono::steady_clock::time_point deadline_;
    std::unique_ptr<sd_bus, decltype(&sd_bus_close_unref)> bus_{nullptr, sd_bus_close_unref};
};

}  // namespace OrvelSystem
