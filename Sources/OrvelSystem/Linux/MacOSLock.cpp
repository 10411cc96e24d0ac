#include "OrvelSystem/MacOSLock.h"

#include <chrono>
#include <string>

#include "OrvelSystem/Linux/BoundedBus.h"
#include "OrvelSystem/Linux/LoginSession.h"
#include "OrvelSystem/Linux/SessionLocker.h"
#include "OrvelSystem/Linux/Spawn.h"

namespace OrvelSystem {

namespace {

constexpr char service[] = "org.freedesktop.login1";
constexpr char managerPath[] = "/org/freedesktop/login1";
constexpr char managerInterface[] = "org.freedesktop.login1.Manager";
constexpr char sessionInterface[] = "org.freedesktop.login1.Session";
constexpr std::chrono::milliseconds busTimeout{250};

bool requestLock(const std::string& session) {
    BoundedBus bus(BoundedBus::Kind::system, busTimeout);
    const auto outcome = bus.call(
        {service, managerPath, managerInterface, "LockSession"},
        [](sd_bus_message*) { return true; }, "s", session.c_str());
    // logind answers at once, and its answer decides whether the fallback is needed. An unanswered
    // request is still queued on the bus, which delivers it when logind is ready.
    return outcome == BoundedBus::Outcome::succeeded || outcome == BoundedBus::Outcome::unanswered;
}

}  // namespace

bool MacOSLock::isAvailable() {
    return LoginSession::current().has_value();
}

bool MacOSLock::engage() {
    // logind would accept the request even if no program listened, and this program would receive
    // it too.
    if (SessionLocker::command()) return engageFallback();
    const auto session = LoginSession::current();
    return (session && requestLock(*session)) || engageFallback();
}

bool MacOSLock::engageFallback() {
    const Arguments byDesktop{"xdg-screensaver", "lock"};
    return spawnDetached(SessionLocker::command().value_or(byDesktop)).has_value();
}

bool MacOSLock::isScreenLocked() {
    const auto session = LoginSession::current();
    if (!session) return false;
    BoundedBus bus(BoundedBus::Kind::system, busTimeout);
    std::string path;
    bus.call(
        {service, managerPath, managerInterface, "GetSession"},
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
        {service, path.c_str(), "org.freedesktop.DBus.Properties", "Get"},
        [&locked](sd_bus_message* reply) {
            return sd_bus_message_enter_container(reply, 'v', "b") > 0 &&
                   sd_bus_message_read_basic(reply, 'b', &locked) > 0;
        },
        "ss", sessionInterface, "LockedHint");
    return locked != 0;
}

}  // namespace OrvelSystem
