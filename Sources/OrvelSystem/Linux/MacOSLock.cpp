#include "OrvelSystem/MacOSLock.h"

#include <chrono>
#include <functional>
#include <memory>

#include <systemd/sd-bus.h>

#include "OrvelSystem/Linux/LoginSession.h"
#include "OrvelSystem/Linux/Spawn.h"

namespace OrvelSystem {

namespace {

using Clock = std::chrono::steady_clock;

constexpr char service[] = "org.freedesktop.login1";
constexpr char managerPath[] = "/org/freedesktop/login1";
constexpr char managerInterface[] = "org.freedesktop.login1.Manager";
constexpr char sessionInterface[] = "org.freedesktop.login1.Session";

// The library's blocking calls wait for the handshake with the bus without an end, so everything
// here is sent as an asynchronous call and the connection is driven up to a deadline.
class LoginBus {
  public:
    LoginBus() {
        sd_bus* bus = nullptr;
        if (sd_bus_open_system(&bus) >= 0) bus_.reset(bus);
    }

    enum class Outcome { succeeded, failed, unanswered, notSent };
    using Read = std::function<bool(sd_bus_message*)>;

    // `read` takes what it needs from the reply; false makes the call a failed one.
    Outcome call(const char* path, const char* interface, const char* member, const Read& read,
                 const char* types, auto... arguments) {
        if (!bus_) return Outcome::notSent;
        Pending pending{read, Outcome::unanswered};
        sd_bus_slot* slot = nullptr;
        if (sd_bus_call_method_async(bus_.get(), &slot, service, path, interface, member, answered,
                                     &pending, types, arguments...) < 0)
            return Outcome::notSent;
        const std::unique_ptr<sd_bus_slot, decltype(&sd_bus_slot_unref)> owned(slot,
                                                                               sd_bus_slot_unref);
        while (pending.outcome == Outcome::unanswered) {
            const int progress = sd_bus_process(bus_.get(), nullptr);
            if (progress < 0) return Outcome::failed;
            if (progress > 0) continue;
            const auto left =
                std::chrono::duration_cast<std::chrono::microseconds>(deadline_ - Clock::now());
            if (left.count() <= 0 || sd_bus_wait(bus_.get(), left.count()) < 0) break;
        }
        if (pending.outcome != Outcome::unanswered) return pending.outcome;
        std::uint64_t queued = 0;
        const bool left = sd_bus_is_ready(bus_.get()) > 0 &&
                          sd_bus_get_n_queued_write(bus_.get(), &queued) >= 0 && queued == 0;
        return left ? Outcome::unanswered : Outcome::notSent;
    }

  private:
    struct Pending {
        const Read& read;
        Outcome outcome;
    };
    static int answered(sd_bus_message* reply, void* data, sd_bus_error* /*error*/) {
        auto& pending = *static_cast<Pending*>(data);
        const bool good =
            sd_bus_message_is_method_error(reply, nullptr) <= 0 && pending.read(reply);
        pending.outcome = good ? Outcome::succeeded : Outcome::failed;
        return 0;
    }

    Clock::time_point deadline_ = Clock::now() + std::chrono::milliseconds(250);
    std::unique_ptr<sd_bus, decltype(&sd_bus_close_unref)> bus_{nullptr, sd_bus_close_unref};
};

bool requestLock(const std::string& session) {
    LoginBus bus;
    const auto outcome = bus.call(
        managerPath, managerInterface, "LockSession", [](sd_bus_message*) { return true; }, "s",
        session.c_str());
    // An answer comes at once and tells whether the fallback is needed. Without one the request
    // still lies with the bus, which hands it on when logind is ready.
    return outcome == LoginBus::Outcome::succeeded || outcome == LoginBus::Outcome::unanswered;
}

}  // namespace

bool MacOSLock::isAvailable() {
    return LoginSession::current().has_value();
}

bool MacOSLock::engage() {
    const auto session = LoginSession::current();
    return (session && requestLock(*session)) || engageFallback();
}

bool MacOSLock::engageFallback() {
    return spawnDetached({"xdg-screensaver", "lock"}).has_value();
}

bool MacOSLock::isScreenLocked() {
    const auto session = LoginSession::current();
    if (!session) return false;
    LoginBus bus;
    std::string path;
    bus.call(
        managerPath, managerInterface, "GetSession",
        [&path](sd_bus_message* reply) {
            const char* text = nullptr;
            if (sd_bus_message_read_basic(reply, 'o', &text) <= 0) return false;
            path = text;
            return true;
        },
        "s", session->c_str());
    if (path.empty()) return false;
    int locked = 0;
    bus.call(
        path.c_str(), "org.freedesktop.DBus.Properties", "Get",
        [&locked](sd_bus_message* reply) {
            return sd_bus_message_enter_container(reply, 'v', "b") > 0 &&
                   sd_bus_message_read_basic(reply, 'b', &locked) > 0;
        },
        "ss", sessionInterface, "LockedHint");
    return locked != 0;
}

}  // namespace OrvelSystem
