#include "OrvelSystem/Linux/SessionLocker.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include "OrvelCore/AtomicFile.h"
#include "OrvelSystem/Linux/BoundedBus.h"

namespace OrvelSystem {

namespace {

namespace fs = std::filesystem;

// Programs that listen to the Lock signal of their logind session.
constexpr std::array<std::string_view, 10> programs{
    "xss-lock",           "light-locker",        "gnome-shell",      "gnome-flashback",
    "ksmserver",          "xfce4-screensaver",   "mate-screensaver", "cinnamon-screensaver",
    "budgie-screensaver", "xscreensaver-systemd"};
// Bus names that the lockers of desktops own. Their processes may have any name.
constexpr std::array<std::string_view, 5> services{"org.gnome.ScreenSaver", "org.kde.screensaver",
                                                   "org.xfce.ScreenSaver", "org.mate.ScreenSaver",
                                                   "org.cinnamon.ScreenSaver"};

// The kernel truncates a process name to this many characters.
constexpr std::size_t keptByKernel = 15;

std::string contents(const fs::path& file) {
    return OrvelCore::readFile(file).value_or(std::string());
}

// The display name without its screen number: the screens of a display share one server.
std::string_view server(std::string_view display) {
    const auto colon = display.rfind(':');
    if (colon == std::string_view::npos) return display;
    return display.substr(0, std::min(display.find('.', colon), display.size()));
}

std::string swayidleConfig() {
    const char* const chosen = std::getenv("XDG_CONFIG_HOME");
    const char* const home = std::getenv("HOME");
    const fs::path folder = chosen && *chosen ? fs::path(chosen)
                            : home            ? fs::path(home) / ".config"
                                              : fs::path();
    return contents(folder / "swayidle/config");
}

/// Visits the folders in /proc of this user's processes, with their names, until
/// a visit returns true. Returns whether one did.
bool anyProcess(const std::function<bool(const fs::path& process, std::string_view name)>& visit) {
    std::error_code error;
    fs::directory_iterator at("/proc", error);
    // Processes start and end during the iteration. An error ends the list and keeps what was
    // found.
    for (; !error && at != fs::directory_iterator(); at.increment(error)) {
        const auto& process = at->path();
        if (!std::isdigit(static_cast<unsigned char>(process.filename().native().front())))
            continue;
        struct stat owner {};
        if (stat(process.c_str(), &owner) != 0 || owner.st_uid != getuid()) continue;
        auto name = contents(process / "comm");
        if (name.ends_with('\n')) name.pop_back();
        if (visit(process, name)) return true;
    }
    return false;
}

bool processRuns() {
    const char* const named = std::getenv("DISPLAY");
    return anyProcess([display = std::string_view(named ? named : "")](const fs::path& process,
                                                                       std::string_view name) {
        // A process that has ended and was not reaped has no command line.
        return SessionLocker::isLocker(name) && !contents(process / "cmdline").empty() &&
               SessionLocker::sharesDisplay(contents(process / "environ"), display);
    });
}

bool isWayland() {
    const auto isSet = [](const char* name) {
        const char* const value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    const char* const type = std::getenv("XDG_SESSION_TYPE");
    return isSet("WAYLAND_DISPLAY") &&
           (!isSet("DISPLAY") || (type && std::string_view(type) == "wayland"));
}

bool isInstalled(const char* program) {
    const char* const path = std::getenv("PATH");
    std::istringstream folders{std::string(path ? path : "")};
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (!folder.empty() && access((fs::path(folder) / program).c_str(), X_OK) == 0) return true;
    }
    return false;
}

bool serviceRuns() {
    BoundedBus bus(BoundedBus::Kind::session, std::chrono::milliseconds(50));
    bool found = false;
    const auto read = [&found](sd_bus_message* reply) {
        if (sd_bus_message_enter_container(reply, 'a', "s") <= 0) return false;
        const char* name = nullptr;
        while (sd_bus_message_read_basic(reply, 's', &name) > 0)
            found = found || SessionLocker::isLockerService(name);
        return true;
    };
    bus.call({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ListNames"},
             read, "");
    return found;
}

}  // namespace

bool SessionLocker::isKnown() {
    return processRuns() || serviceRuns();
}

std::optional<Arguments> SessionLocker::command() {
    // A desktop with a locker of its own may not let another program lock.
    if (!isWayland() || isKnown()) return {};
    std::optional<std::string> found;
    anyProcess([&found](const fs::path& process, std::string_view name) {
        if (name == "swayidle")
            found = swayidleCommand(contents(process / "cmdline"), swayidleConfig());
        return found.has_value();
    });
    if (found) return Arguments{"sh", "-c", *found};
    return isInstalled("swaylock") ? std::optional(Arguments{"swaylock"}) : std::nullopt;
}

bool SessionLocker::isAvailable() {
    // Asked before each lock, so the cheapest way comes first.
    return (isWayland() && isInstalled("swaylock")) || command() || isKnown();
}

std::optional<std::string> SessionLocker::swayidleCommand(std::string_view commandLine,
                                                          std::string_view config) {
    // The name of an event is followed by its command.
    constexpr std::string_view event("\0lock\0", 6);
    if (const auto at = commandLine.find(event); at != std::string_view::npos) {
        const auto command = commandLine.substr(at + event.size());
        return std::string(command.substr(0, command.find('\0')));
    }
    std::istringstream lines{std::string(config)};
    for (std::string line, word; std::getline(lines, line);) {
        std::istringstream rest(line);
        if (!(rest >> word) || word != "lock" || !std::getline(rest >> std::ws, line)) continue;
        line.erase(line.find_last_not_of(" \t\r") + 1);
        if (line.size() >= 2 && line.front() == line.back() &&
            (line.front() == '\'' || line.front() == '"'))
            line = line.substr(1, line.size() - 2);
        return line;
    }
    return {};
}

bool SessionLocker::isLocker(std::string_view processName) {
    return std::ranges::any_of(programs, [processName](std::string_view program) {
        return processName == program.substr(0, keptByKernel);
    });
}

bool SessionLocker::isLockerService(std::string_view busName) {
    return std::ranges::find(services, busName) != services.end();
}

bool SessionLocker::sharesDisplay(std::string_view environment, std::string_view display) {
    constexpr std::string_view variable = "DISPLAY=";
    while (!environment.empty()) {
        const auto entry = environment.substr(0, environment.find('\0'));
        if (entry.starts_with(variable))
            return server(entry.substr(variable.size())) == server(display);
        environment.remove_prefix(std::min(environment.size(), entry.size() + 1));
    }
    return true;
}

}  // namespace OrvelSystem
