#include "Services.h"

#include <fcntl.h>

#include "Eventually.h"

namespace DesktopTest {

namespace {

constexpr const char* mockInterface = "org.freedesktop.DBus.Mock";
constexpr const char* manager = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* session = "/org/freedesktop/login1/session/_31";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* device = "/net/reactivated/Fprint/Device/0";
constexpr const char* deviceInterface = "net.reactivated.Fprint.Device";
constexpr const char* portal = "/org/freedesktop/portal/desktop";
constexpr const char* portalInterface = "org.freedesktop.portal.Settings";

struct Unref {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, Unref>;

void require(int result, const std::string& what) {
    if (result < 0) throw std::runtime_error(what + ": error " + std::to_string(-result));
}

std::string writeConfiguration(const std::filesystem::path& folder, const std::string& name) {
    const std::string address = "unix:path=" + (folder / name).string();
    writeText(folder / (name + ".conf"), R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>)" + address + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
    return address;
}

/// Calls a method and returns its reply; throws on an error.
template <class... Arguments>
Message call(sd_bus* bus, const std::string& name, const char* path, const char* interface,
             const char* method, const char* types = "", Arguments... arguments) {
    sd_bus_message* reply = nullptr;
    require(sd_bus_call_method(bus, name.c_str(), path, interface, method, nullptr, &reply, types,
                               arguments...),
            method);
    return Message(reply);
}

/// Whether this process owns the name. The bus may still know the owner before it, which was
/// killed.
bool isOwner(sd_bus* bus, const std::string& name, pid_t process) {
    sd_bus_creds* creds = nullptr;
    pid_t owner = 0;
    const bool isKnown = sd_bus_get_name_creds(bus, name.c_str(), SD_BUS_CREDS_PID, &creds) >= 0 &&
                         sd_bus_creds_get_pid(creds, &owner) >= 0;
    sd_bus_creds_unref(creds);
    return isKnown && owner == process;
}

bool booleanProperty(sd_bus* bus, const std::string& name, const char* path, const char* interface,
                     const char* property) {
    int value = 0;
    require(sd_bus_get_property_trivial(bus, name.c_str(), path, interface, property, nullptr, 'b',
                                        &value),
            property);
    return value != 0;
}

}  // namespace

PrivateBus::PrivateBus(const std::filesystem::path& folder, const std::string& name,
                       const Environment& environment)
    : address_(writeConfiguration(folder, name)),
      daemon_({"dbus-daemon", "--nofork", "--nopidfile", "--nosyslog",
               "--config-file=" + (folder / (name + ".conf")).string()},
              environment, folder / (name + ".log")) {
    const bool connected = eventually([&] {
        sd_bus_flush_close_unref(connection_);
        connection_ = nullptr;
        return sd_bus_new(&connection_) >= 0 &&
               sd_bus_set_address(connection_, address_.c_str()) >= 0 &&
               sd_bus_set_bus_client(connection_, 1) >= 0 && sd_bus_start(connection_) >= 0 &&
               hasOwner("org.freedesktop.DBus");
    });
    if (!connected) throw std::runtime_error("no " + name + ": " + daemon_.output());
}

PrivateBus::~PrivateBus() {
    sd_bus_flush_close_unref(connection_);
}

bool PrivateBus::hasOwner(const std::string& name) {
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call_method(connection_, "org.freedesktop.DBus",
                                          "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                          "NameHasOwner", nullptr, &reply, "s", name.c_str());
    const Message owned(reply);
    int has = 0;
    return result >= 0 && sd_bus_message_read(reply, "b", &has) > 0 && has;
}

MockService::MockService(PrivateBus& bus, const std::string& templateFile, std::string busName,
                         const Environment& environment, const std::filesystem::path& log)
    : bus_(bus),
      name_(std::move(busName)),
      process_({"python3", "-m", "dbusmock", "--template",
                std::string(KARVO_DESKTOP_FOLDER "/mocks/") + templateFile},
               environment, log) {
    const auto isUp = [&] { return isOwner(bus_.connection(), name_, process_.pid()); };
    if (!eventually([&] { return isUp() || !process_.isRunning(); }) || !process_.isRunning())
        throw std::runtime_error(name_ + " does not run: " + process_.output());
}

// logind

Logind::Logind(PrivateBus& bus, const Environment& environment, const std::filesystem::path& log)
    : MockService(bus, "logind.py", "org.freedesktop.login1", environment, log) {
    const auto count = [](sd_bus_message*, void* self, sd_bus_error*) {
        ++static_cast<Logind*>(self)->lockRequests_;
        return 0;
    };
    require(sd_bus_match_signal(bus_.connection(), &match_, nullptr, session, sessionInterface,
                                "Lock", count, this),
            "match");
}

Logind::~Logind() {
    sd_bus_slot_unref(match_);
}

int Logind::lockRequests() {
    while (sd_bus_process(bus_.connection(), nullptr) > 0) continue;
    return lockRequests_;
}

void Logind::setLockedHint(bool locked) {
    call(bus_.connection(), name_, session, sessionInterface, "SetLockedHint", "b", int{locked});
}

bool Logind::lockedHint() {
    return booleanProperty(bus_.connection(), name_, session, sessionInterface, "LockedHint");
}

void Logind::signalLock() {
    call(bus_.connection(), name_, session, sessionInterface, "Lock");
}

void Logind::signalUnlock() {
    call(bus_.connection(), name_, session, sessionInterface, "Unlock");
}

void Logind::prepareForSleep(bool sleeping) {
    call(bus_.connection(), name_, manager, mockInterface, "EmitSignal", "sssav", managerInterface,
         "PrepareForSleep", "b", 1, "b", int{sleeping});
}

void Logind::setActive(bool active) {
    call(bus_.connection(), name_, session, mockInterface, "UpdateProperties", "sa{sv}",
         sessionInterface, 2, "Active", "b", int{active}, "State", "s",
         active ? "active" : "online");
}

std::vector<std::string> Logind::inhibitors() {
    const auto reply = call(bus_.connection(), name_, manager, managerInterface, "ListInhibitors");
    require(sd_bus_message_enter_container(reply.get(), 'a', "(ssssuu)"), "inhibitors");
    std::vector<std::string> result;
    const char *what = nullptr, *who = nullptr, *why = nullptr, *mode = nullptr;
    unsigned uid = 0, pid = 0;
    while (sd_bus_message_read(reply.get(), "(ssssuu)", &what, &who, &why, &mode, &uid, &pid) > 0)
        result.emplace_back(what);
    return result;
}

Logind::Inhibitor Logind::inhibit(const std::string& what) {
    const auto reply = call(bus_.connection(), name_, manager, managerInterface, "Inhibit", "ssss",
                            what.c_str(), "Player", "A film", "block");
    int file = -1;
    require(sd_bus_message_read(reply.get(), "h", &file), "Inhibit");
    return Inhibitor(fcntl(file, F_DUPFD_CLOEXEC, 0));
}

Logind::Inhibitor::~Inhibitor() {
    close(file_);
}

// the portal

Portal::Portal(PrivateBus& bus, const Environment& environment, const std::filesystem::path& log)
    : MockService(bus, "portal.py", "org.freedesktop.portal.Desktop", environment, log) {}

void Portal::setDark(bool dark) {
    call(bus_.connection(), name_, portal, mockInterface, "EmitSignal", "sssav", portalInterface,
         "SettingChanged", "ssv", 3, "s", "org.freedesktop.appearance", "s", "color-scheme", "v",
         "u", dark ? 1U : 2U);
}

// fprintd

FingerprintReader::FingerprintReader(PrivateBus& bus, const Environment& environment,
                                     const std::filesystem::path& log)
    : MockService(bus, "fprintd.py", "net.reactivated.Fprint", environment, log) {}

bool FingerprintReader::isVerifying() {
    const auto reply = call(bus_.connection(), name_, device, deviceInterface, "IsVerifying");
    int verifying = 0;
    require(sd_bus_message_read(reply.get(), "b", &verifying), "IsVerifying");
    return verifying != 0;
}

int FingerprintReader::calls(const std::string& method) {
    const auto reply = call(bus_.connection(), name_, device, mockInterface, "GetMethodCalls", "s",
                            method.c_str());
    require(sd_bus_message_enter_container(reply.get(), 'a', "(tav)"), "GetMethodCalls");
    int count = 0;
    while (sd_bus_message_skip(reply.get(), "(tav)") > 0) ++count;
    return count;
}

void FingerprintReader::report(const std::string& result, bool done) {
    tell("VerifyStatus", result, done);
}

void FingerprintReader::reportEnrolment(const std::string& result, bool done) {
    tell("EnrollStatus", result, done);
}

void FingerprintReader::tell(const char* signal, const std::string& result, bool done) {
    call(bus_.connection(), name_, device, mockInterface, "EmitSignal", "sssav", deviceInterface,
         signal, "sb", 2, "s", result.c_str(), "b", int{done});
}

}  // namespace DesktopTest
