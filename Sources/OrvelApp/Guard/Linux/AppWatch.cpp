#include "OrvelApp/Guard/Linux/AppWatch.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include <sys/inotify.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/Linux/ExitPipe.h"
#include "OrvelSystem/Linux/Spawn.h"
#include "OrvelSystem/Linux/UserLock.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/ProcessList.h"

namespace OrvelApp {

namespace fs = std::filesystem;
using OrvelSystem::ProcessList;

namespace {

using Variables = std::map<std::string, std::string, std::less<>>;

/// Parses a block of "NAME=value" entries, each terminated by a null character.
Variables parse(const std::string& block) {
    Variables variables;
    for (std::size_t start = 0; start < block.size();) {
        const auto end = std::min(block.find('\0', start), block.size());
        const auto entry = block.substr(start, end - start);
        const auto equals = entry.find('=');
        if (equals != std::string::npos && equals > 0)
            variables.insert_or_assign(entry.substr(0, equals), entry.substr(equals + 1));
        start = end + 1;
    }
    return variables;
}

void apply(const Variables& variables) {
    clearenv();
    for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
}

/// Each data folder has its own guard.
fs::path environmentFile() {
    return OrvelSystem::UserLock::runtimeFile(OrvelSystem::UserLock::guard, "environment");
}

bool hasSameFolder(const Variables& variables) {
    const auto folder = OrvelCore::dataFolder([&](const char* name) -> const char* {
        const auto found = variables.find(std::string_view(name));
        return found == variables.end() ? nullptr : found->second.c_str();
    });
    return folder.lexically_normal() == OrvelCore::dataFolder().lexically_normal();
}

}  // namespace

void AppWatch::adopt() {
    auto pids = ProcessList::running(executable_);
    std::ranges::sort(pids);
    for (const auto pid : pids) {
        const auto known = std::ranges::find(processes_, pid, &Process::pid);
        if (known != processes_.end()) {
            // After an update the process runs the new program and keeps another pipe.
            if (known->exitPipe < 0) known->exitPipe = OrvelSystem::ExitPipe::openOf(pid);
            known->isEnding = known->isEnding && known->exitPipe < 0;
            continue;
        }
        const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
        if (descriptor < 0) continue;
        const auto block = OrvelCore::readFile(fs::path("/proc") / std::to_string(pid) / "environ");
        const auto variables = parse(block.value_or(std::string()));
        // An app with another data folder has its own marker and guard. An app whose environment
        // cannot be read may belong to this guard.
        if (!variables.empty() && !hasSameFolder(variables)) {
            close(descriptor);
            continue;
        }
        if (processes_.empty() && !variables.empty()) {
            apply(variables);
            // Waiting for the disk would delay the guard's work at the beginning of a lock.
            (void)OrvelCore::writeAtomically(environmentFile(), *block,
                                             OrvelCore::Durability::untilShutdown);
        }
        processes_.push_back({pid, descriptor, OrvelSystem::ExitPipe::openOf(pid)});
    }
}

bool AppWatch::restoreEnvironment() {
    const auto block = OrvelCore::readFile(environmentFile());
    const auto variables = parse(block.value_or(std::string()));
    if (variables.empty() || !hasSameFolder(variables)) return false;
    apply(variables);
    return true;
}

void AppWatch::appendTo(std::vector<pollfd>& polled) const {
    for (const auto& process : processes_) {
        polled.push_back({process.descriptor, POLLIN, 0});
        // Nothing is ever written to the pipe, and `poll` always reports that it hangs up.
        polled.push_back({process.exitPipe, 0, 0});
    }
}

bool AppWatch::isAlive() const {
    return !std::ranges::all_of(processes_, &Process::isEnding);
}

AppWatch::Change AppWatch::update(const std::vector<pollfd>& polled) {
    const bool wasRunning = isRunning();
    const bool wasAlive = isAlive();
    for (const auto& entry : polled) {
        if (entry.fd < 0 || entry.revents == 0) continue;
        for (auto& process : processes_) {
            if (process.exitPipe != entry.fd) continue;
            close(std::exchange(process.exitPipe, -1));
            process.isEnding = true;
        }
        std::erase_if(processes_, [&](const Process& process) {
            if (process.descriptor != entry.fd) return false;
            close(process.descriptor);
            if (process.exitPipe >= 0) close(process.exitPipe);
            return true;
        });
    }
    if (wasRunning && !isRunning()) return Change::ended;
    return wasAlive && !isAlive() ? Change::ending : Change::none;
}

void AppWatch::relaunch() {
    if (!isRunning())
        (void)OrvelSystem::spawnDetached({executable_.string(), OrvelSystem::LoginItem::argument});
    adopt();
}

FolderWatch::FolderWatch(fs::path folder)
    : folder_(std::move(folder)), inotify_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    begin();
}

void FolderWatch::drain() {
    alignas(inotify_event) char buffer[4096];
    bool gone = false;
    ssize_t size = 0;
    while ((size = read(inotify_, buffer, sizeof(buffer))) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(buffer + at);
            if ((event.mask & (IN_IGNORED | IN_MOVE_SELF)) != 0) gone = true;
            at += static_cast<ssize_t>(sizeof(event) + event.len);
        }
    }
    if (gone) begin();
}

void FolderWatch::begin() {
    std::error_code error;
    fs::create_directories(folder_, error);
    inotify_add_watch(inotify_, folder_.c_str(),
                      IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVE_SELF | IN_ONLYDIR);
}

}  // namespace OrvelApp
