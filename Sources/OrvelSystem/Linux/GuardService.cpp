#include "OrvelSystem/GuardService.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string_view>
#include <thread>

#include <fmt/format.h>
#include <unistd.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/Linux/Spawn.h"
#include "OrvelSystem/Linux/UserLock.h"
#include "OrvelSystem/ProcessList.h"

// The guard runs as the systemd user unit that the package installs. If the session has no user
// manager, or the program was not installed as a package, the app starts the guard itself.

namespace OrvelSystem {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view unit = "karvo-guard.service";
constexpr std::string_view wantedBy = "graphical-session.target.wants";

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

std::vector<fs::path> unitFolders() {
    return {OrvelCore::configFolder().parent_path() / "systemd/user", "/etc/systemd/user",
            OrvelCore::dataFolder().parent_path() / "systemd/user", "/usr/local/lib/systemd/user",
            "/usr/lib/systemd/user"};
}

bool inUnitFolder(const fs::path& name) {
    return std::ranges::any_of(unitFolders(),
                               [&](const fs::path& folder) { return isThere(folder / name); });
}

bool hasUserManager() {
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return folder && *folder == '/' && isThere(fs::path(folder) / "systemd/private");
}

bool isManaged() {
    return hasUserManager() && inUnitFolder(unit);
}

// A user who wants no guard masks its unit.
bool isMasked() {
    std::error_code error;
    return fs::read_symlink(unitFolders().front() / unit, error) == "/dev/null";
}

bool isExecutable(const fs::path& file) {
    return access(file.c_str(), X_OK) == 0;
}

std::error_code systemctl(std::initializer_list<std::string> arguments) {
    Arguments all{"systemctl", "--user"};
    all.insert(all.end(), arguments);
    const auto status = runToEnd(all);
    if (!status) return status.error();
    return *status == 0 ? std::error_code() : std::make_error_code(std::errc::operation_canceled);
}

/// Waits up to one second for the condition to become true.
bool soon(const std::function<bool()>& isSo) {
    for (int look = 0; look < 20; ++look) {
        if (isSo()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

void end(const std::vector<std::int64_t>& processes) {
    for (const auto pid : processes) kill(static_cast<pid_t>(pid), SIGTERM);
}

}  // namespace

fs::path GuardService::executable() {
    std::error_code error;
    const auto own = fs::read_symlink("/proc/self/exe", error);
    return own.parent_path() / OrvelCore::Brand::guardExecutable;
}

bool GuardService::isEnabled() {
    if (!isExecutable(executable()) || isMasked()) return false;
    return !isManaged() || inUnitFolder(fs::path(wantedBy) / unit);
}

std::error_code GuardService::registerService() {
    if (!isExecutable(executable())) {
        return std::make_error_code(std::errc::no_such_file_or_directory);
    }
    if (isMasked()) return std::make_error_code(std::errc::operation_not_permitted);
    return isManaged() ? systemctl({"enable", std::string(unit)}) : std::error_code();
}

void GuardService::unregisterService() {
    if (isManaged()) (void)systemctl({"disable", "--now", std::string(unit)});
    end(ProcessList::running(executable()));
}

void GuardService::kickstart() {
    const auto guard = executable();
    const auto guards = [&guard] {
        return ProcessList::isRunning(guard) && UserLock::isHeld(UserLock::guard);
    };
    // A guard that has just been started does not hold its lock yet.
    if (guards() || (ProcessList::isRunning(guard) && soon(guards))) return;
    // The unit may belong to another installation, or the user manager may not know this session's
    // data folder. Such a guard cannot protect this program.
    if (isManaged() && !systemctl({"start", std::string(unit)}) && soon(guards)) return;
    if (const auto started = spawnDetached({guard.string()}); !started) {
        fmt::print(stderr, "{}: could not start the crash guard: {}\n", OrvelCore::Brand::name,
                   started.error().message());
    }
}

void GuardService::renew() {
    const auto guard = executable();
    end(ProcessList::outdated(guard));
    // Only one guard runs at a time: a new one exits if the old one still holds the lock.
    soon([&] { return ProcessList::outdated(guard).empty(); });
    kickstart();
}

}  // namespace OrvelSystem
