// The crash guard. It sleeps until a marker appears, which the app writes before it covers
// anything, and then holds on to the app's process until that ends. So the app need not know how
// it is found, a guard that starts late misses nothing, and nothing is ever polled, except while
// its stand-in covers the screen for an app that is gone. `Guard` decides; this file only binds.

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <expected>
#include <filesystem>
#include <string>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include "OrvelApp/Guard/Guard.h"
#include "OrvelApp/Guard/Linux/AppWatch.h"
#include "OrvelApp/Guard/Linux/PasswordCheckProcess.h"
#include "OrvelApp/Guard/X11/StandInWindow.h"
#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/Linux/SessionKind.h"
#include "OrvelSystem/Linux/UserLock.h"
#include "OrvelSystem/MacOSLock.h"

namespace {

using namespace OrvelApp;
using OrvelSystem::MacOSLock;

constexpr int tickInterval = 500;        // ms
constexpr double passwordTimeout = 5.0;  // seconds, as in the app

std::filesystem::path ownFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

class GuardProgram final : public GuardSurroundings {
  public:
    GuardProgram() : app_(ownFolder() / OrvelCore::Brand::executable) {
        standIn_.onRose = [this] { guard_.standInRose(*this); };
        standIn_.onFell = [this] { guard_.standInFell(); };
        standIn_.onEntered = [this] { guard_.entered(*this, standIn_.typed().empty()); };
    }

    int run() {
        adopt();
        if (!app_.isRunning() && isMarked() && AppWatch::restoreEnvironment()) prepare(true);
        guard_.started(*this);
        for (;;) {
            const bool isBusy = standIn_.handleEvents();
            std::vector<pollfd> polled{{folder_.descriptor(), POLLIN, 0},
                                       {standIn_.descriptor(), POLLIN, 0},
                                       {password_.descriptor(), POLLIN, 0}};
            app_.appendTo(polled);
            const bool ticks =
                guard_.needsTicks() || standIn_.needsTending() || password_.isRunning();
            if (poll(polled.data(), polled.size(), isBusy ? 0 : ticks ? untilTick() : -1) < 0) {
                if (errno == EINTR) continue;
                return EXIT_FAILURE;
            }
            const bool folderChanged = polled.front().revents != 0;
            folder_.drain();
            if (app_.drop(polled)) {
                standIn_.tend(false);
                guard_.appExited(*this);
                // A program that has the keyboard must not hear the owner meanwhile.
                standIn_.tend(app_.isRunning());
            } else if (folderChanged && isMarked()) {
                adopt();
                // A marker has appeared whose writer is gone by now.
                if (!app_.isRunning()) guard_.appExited(*this);
            }
            if (password_.isRunning()) {
                if (const auto verdict = password_.verdict()) guard_.checked(*this, *verdict);
            }
            if (ticks && untilTick() == 0) tick();
        }
    }

    double now() const override {
        timespec now{};
        clock_gettime(CLOCK_BOOTTIME, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
    }

    std::optional<OrvelCore::LockMarker> marker() const override { return markers_.read(); }
    bool mark() override {
        return markers_
            .write({.lockedAt = OrvelCore::Date(std::chrono::system_clock::now()),
                    .bootSession = bootSession_,
                    .failures = 0})
            .has_value();
    }
    void clearMarker() override { markers_.clear(); }

    bool appRuns() override { return app_.isRunning(); }
    void relaunch() override {
        app_.relaunch();
        standIn_.tend(app_.isRunning());
    }

    void engageLock() override { MacOSLock::engage(); }
    void engageLockFallback() override {
        // Without logind the first request has gone this way already.
        if (MacOSLock::isAvailable()) MacOSLock::engageFallback();
    }
    bool systemIsLocked() override { return MacOSLock::isScreenLocked(); }
    bool staysClosed() const override { return session_ == OrvelSystem::SessionKind::wayland; }

    void hide() override { standIn_.putUp(); }
    void reveal() override { standIn_.withdraw(); }
    void say(const std::string& text) override { standIn_.say(text); }

    void checkPassword() override {
        password_.begin(standIn_.typed(), passwordTimeout);
        standIn_.typed().clear();
        if (!password_.isRunning()) guard_.checked(*this, Guard::Verdict::unavailable);
    }
    void recordFailedAttempt() override {
        const auto file = OrvelCore::AttemptLog::standardFile();
        const auto date = OrvelCore::Date(std::chrono::system_clock::now());
        auto attempts = OrvelCore::AttemptLog::load(file);
        attempts.record(date);
        attempts.prune(date);
        (void)attempts.save(file);
    }

  private:
    bool isMarked() const { return markers_.activeMarker(bootSession_).has_value(); }

    void adopt() {
        const bool wasRunning = app_.isRunning();
        app_.adopt();
        // Only the app's environment may tell of the display, and each start of it may be in
        // another session.
        if (app_.isRunning()) prepare(!wasRunning);
    }

    /// Makes what the session needs, by the app's environment.
    void prepare(bool isNew) {
        // One that does not answer any more is what it was.
        if (const auto kind = isNew || !session_ ? OrvelSystem::currentSession() : session_)
            session_ = *kind;
        if (session_ == OrvelSystem::SessionKind::x11) standIn_.make();
    }

    void tick() {
        nextTick_ = now() + tickInterval / 1e3;
        adopt();
        standIn_.tend(app_.isRunning());
        guard_.tick(*this);
    }

    /// Milliseconds.
    int untilTick() const {
        const double seconds = nextTick_ - now();
        return seconds <= 0 ? 0 : static_cast<int>(seconds * 1e3) + 1;
    }

    const std::string bootSession_ = OrvelSystem::BootSession::current();
    OrvelCore::LockMarkerStore markers_ = OrvelCore::LockMarkerStore::standard();
    FolderWatch folder_{OrvelCore::dataFolder()};
    AppWatch app_;
    /// Of the app; an error before the first one.
    std::expected<OrvelSystem::SessionKind, std::string> session_ = std::unexpected("");
    StandInWindow standIn_;
    PasswordCheckProcess password_;
    Guard guard_{bootSession_};
    double nextTick_ = 0;
};

}  // namespace

int main() {
    // It outlives the terminal and the session leader that the app was started from.
    setsid();
    for (const int number : {SIGHUP, SIGINT, SIGPIPE}) std::signal(number, SIG_IGN);
    GuardProgram program;
    // It watches the folder already, so from here on it sees a marker.
    const OrvelSystem::UserLock lock(OrvelSystem::UserLock::guard);
    return lock.isOurs() ? program.run() : EXIT_SUCCESS;
}
