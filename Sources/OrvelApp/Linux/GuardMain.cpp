// The crash guard. It sleeps until a marker appears, which the app writes before it covers
// anything, and then holds on to the app's process until that ends. So the app need not know how
// it is found, a guard that starts late misses nothing, and nothing is ever polled, except while
// its stand-in covers the screen for an app that is gone.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "OrvelApp/Guard/Guard.h"
#include "OrvelApp/Guard/StandInWindow.h"
#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Brand.h"
#include "OrvelCore/StandInPolicy.h"
#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/Linux/Spawn.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/MacOSLock.h"
#include "OrvelSystem/ProcessList.h"

namespace {

namespace fs = std::filesystem;

using OrvelCore::GuardAction;
using OrvelCore::StandInAction;
using OrvelSystem::LoginItem;
using OrvelSystem::MacOSLock;
using OrvelSystem::ProcessList;

double secondsSinceBoot() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

fs::path ownFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}

// There is one marker per user, so there is one guard, whatever the number of displays. The lock
// goes with the process.
bool becomeTheOnlyGuard(const fs::path& dataFolder) {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    const fs::path folder = runtime && *runtime == '/' ? fs::path(runtime) : dataFolder;
    const auto file = folder / (std::string(OrvelCore::Brand::slug) + "-guard.lock");
    const int lock = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    // A guard too many locks a screen twice; none at all leaves it open.
    return lock < 0 || flock(lock, LOCK_EX | LOCK_NB) == 0;
}

// The processes of the app, each held by a descriptor that cannot come to mean another process.
class AppWatch {
  public:
    explicit AppWatch(fs::path executable) : executable_(std::move(executable)) {}

    bool isRunning() const { return !processes_.empty(); }

    // Begins to watch what runs now. Processes that only hand a request over to the running app
    // and end at once may be among them, so the app has gone when all of them have.
    void adopt() {
        auto pids = ProcessList::running(executable_);
        std::ranges::sort(pids);
        for (const auto pid : pids) {
            if (std::ranges::find(processes_, pid, &Process::pid) != processes_.end()) continue;
            const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
            if (descriptor < 0) continue;
            if (processes_.empty()) takeEnvironment(pid);
            processes_.push_back({pid, descriptor});
        }
    }

    void appendTo(std::vector<pollfd>& polled) const {
        for (const auto& process : processes_) polled.push_back({process.descriptor, POLLIN, 0});
    }

    // True when the last of them has just ended.
    bool drop(const std::vector<pollfd>& polled) {
        const bool wasRunning = isRunning();
        for (const auto& entry : polled) {
            if (entry.revents == 0) continue;
            std::erase_if(processes_, [&](const Process& process) {
                if (process.descriptor != entry.fd) return false;
                close(process.descriptor);
                return true;
            });
        }
        return wasRunning && !isRunning();
    }

    void relaunch() {
        if (!ProcessList::isRunning(executable_)) {
            (void)OrvelSystem::spawnDetached({executable_.string(), LoginItem::argument});
        }
    }

  private:
    struct Process {
        std::int64_t pid;
        int descriptor;
    };

    // A service of the user manager may know neither the display nor the session; the app does.
    static void takeEnvironment(std::int64_t pid) {
        const auto file = fs::path("/proc") / std::to_string(pid) / "environ";
        const auto block = OrvelCore::readFile(file);
        if (!block || block->empty()) return;
        clearenv();
        for (std::size_t start = 0; start < block->size();) {
            const auto end = std::min(block->find('\0', start), block->size());
            const auto entry = block->substr(start, end - start);
            const auto equals = entry.find('=');
            if (equals != std::string::npos && equals > 0) {
                setenv(entry.substr(0, equals).c_str(), entry.substr(equals + 1).c_str(), 1);
            }
            start = end + 1;
        }
    }

    fs::path executable_;
    std::vector<Process> processes_;
};

// Tells of every change in the folder that holds the marker.
class FolderWatch {
  public:
    explicit FolderWatch(fs::path folder) : folder_(std::move(folder)) { begin(); }

    int descriptor() const { return inotify_; }

    void drain() {
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

  private:
    void begin() {
        std::error_code error;
        fs::create_directories(folder_, error);
        inotify_add_watch(inotify_, folder_.c_str(),
                          IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVE_SELF | IN_ONLYDIR);
    }

    fs::path folder_;
    int inotify_ = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
};

// While the stand-in is up.
constexpr int glance = 500;  // ms

// Nobody may have heard the request: a bare window manager has no locker that listens. It ends
// early when the app does, which has to be answered first.
void confirmLock(OrvelApp::StandInWindow& standIn, const AppWatch& app) {
    constexpr int pause = 200;  // ms
    constexpr double patience = 2;
    if (!MacOSLock::isAvailable()) return;
    const double start = secondsSinceBoot();
    double nextLook = start;
    std::vector<pollfd> polled;
    while (secondsSinceBoot() - start < patience) {
        if (secondsSinceBoot() >= nextLook) {
            if (MacOSLock::isScreenLocked()) return;
            nextLook = secondsSinceBoot() + pause / 1e3;
        }
        // What comes to the top must not stay there for so long.
        standIn.handleEvents();
        polled.assign(1, {standIn.descriptor(), POLLIN, 0});
        app.appendTo(polled);
        poll(polled.data(), polled.size(), pause);
        if (std::any_of(polled.begin() + 1, polled.end(),
                        [](const pollfd& entry) { return entry.revents != 0; }))
            return;
    }
    MacOSLock::engageFallback();
}

}  // namespace

int main() {
    // It outlives the terminal and the session leader that the app was started from.
    setsid();
    for (const int number : {SIGHUP, SIGINT, SIGPIPE}) std::signal(number, SIG_IGN);

    const auto dataFolder = OrvelCore::dataFolder();
    FolderWatch folder(dataFolder);
    if (!becomeTheOnlyGuard(dataFolder)) return 0;

    const auto markers = OrvelCore::LockMarkerStore::standard();
    const auto bootSession = OrvelSystem::BootSession::current();
    const auto isMarked = [&] { return markers.activeMarker(bootSession).has_value(); };
    AppWatch app(ownFolder() / OrvelCore::Brand::executable);
    OrvelApp::StandInWindow standIn;
    OrvelCore::StandInPolicy standInPolicy;
    OrvelApp::Guard guard(
        markers, bootSession,
        {.engageLock = [] { MacOSLock::engage(); }, .relaunch = [&app] { app.relaunch(); }},
        secondsSinceBoot);
    const auto adopt = [&] {
        app.adopt();
        // Only the app's environment may tell of the display.
        if (app.isRunning()) standIn.make();
    };
    const auto settle = [&](GuardAction action) {
        if (action == GuardAction::stay) return;
        adopt();
        // The relaunched app is gone already: its second exit.
        if (action == GuardAction::engageMacOSLockAndRelaunch && !app.isRunning()) {
            guard.orvelExited();
        }
        confirmLock(standIn, app);
    };
    double nextGlance = 0;
    const auto tendStandIn = [&] {
        if (!standIn.isUp()) return standInPolicy.reset();
        const bool asked = standIn.takeReturn();
        const double now = secondsSinceBoot();
        if (now < nextGlance && !asked) return;
        nextGlance = now + glance / 1e3;
        adopt();
        const bool systemIsLocked = MacOSLock::isScreenLocked();
        standIn.setSystemIsLocked(systemIsLocked);
        standIn.freeKeys();
        const auto action = standInPolicy.next({.now = now,
                                                .marked = isMarked(),
                                                .appRuns = app.isRunning(),
                                                .systemIsLocked = systemIsLocked,
                                                .asked = asked});
        if (action == StandInAction::withdraw) return standIn.withdraw();
        if (action == StandInAction::relaunch) {
            app.relaunch();
            adopt();
        }
        standIn.say(app.isRunning()
                        ? std::string()
                        : fmt::format("{} has stopped. Press Return to bring back the lock.",
                                      OrvelCore::Brand::name));
    };

    adopt();
    settle(guard.started(app.isRunning()));
    bool wasUp = false;
    std::vector<pollfd> polled;
    for (;;) {
        const bool isBusy = standIn.handleEvents();
        // A lock that could not be marked has ended with its app.
        if (standIn.isUp() && !wasUp && !isMarked()) MacOSLock::engage();
        wasUp = standIn.isUp();
        polled.assign({{folder.descriptor(), POLLIN, 0}, {standIn.descriptor(), POLLIN, 0}});
        app.appendTo(polled);
        if (poll(polled.data(), polled.size(), isBusy ? 0 : wasUp ? glance : -1) < 0) {
            if (errno == EINTR) continue;
            return EXIT_FAILURE;
        }
        const bool exited = app.drop(polled);
        const bool folderChanged = polled.front().revents != 0;
        folder.drain();
        // The X server learns of the end at about the same time, and only a stand-in that is known
        // to be up keeps the keys of an app that had given them up.
        if (exited) standIn.awaitEvents();
        standIn.handleEvents();
        if (exited || (folderChanged && isMarked())) {
            if (!exited) adopt();
            // Also when a marker has appeared and its writer is gone by now.
            if (!app.isRunning()) settle(guard.orvelExited());
        }
        tendStandIn();
    }
}
