// The crash guard. It sleeps until a marker appears, which the app writes before it covers
// anything, and then holds the app's process by a descriptor until that ends. So the app need not
// know how it is found, and a guard that starts late misses nothing. Nothing is polled except while
// the stand-in covers the screen for an app that is gone. `Guard` decides; this file only binds it
// to the platform.

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <expected>
#include <filesystem>
#include <string>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include "OrvelApp/Guard/Linux/AppWatch.h"
#include "OrvelApp/Guard/Linux/PasswordCheckProcess.h"
#include "OrvelApp/Guard/LiveGuardSurroundings.h"
#include "OrvelApp/Guard/X11/StandInWindow.h"
#include "OrvelAuth/PasswordVerifying.h"
#include "OrvelCore/AppFolders.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/Linux/SessionKind.h"
#include "OrvelSystem/Linux/UserLock.h"

namespace {

using namespace OrvelApp;

constexpr int tickInterval = 500;       // ms
constexpr int shortTickInterval = 100;  // ms

std::filesystem::path ownFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

class GuardProgram final : public LiveGuardSurroundings {
  public:
    GuardProgram() : app_(ownFolder() / OrvelCore::Brand::executable) {
        standIn_.onRose = [this] { guard_.standInRose(*this); };
        standIn_.onFell = [this] { guard_.standInFell(); };
        standIn_.onEntered = [this] {
            guard_.entered(*this, standIn_.typed().empty());
            // What was typed during a check or a pause is not a part of the next password.
            standIn_.typed().clear();
        };
    }

    int run() {
        adopt();
        if (!app_.isRunning() && isMarked() && AppWatch::restoreEnvironment()) prepare(true);
        guard_.started(*this);
        for (;;) {
            const bool isBusy = standIn_.handleEvents();
            std::vector<pollfd> polled{{folder_.descriptor(), POLLIN, 0},
                                       {password_.descriptor(), POLLIN, 0}};
            for (const int descriptor : standIn_.descriptors())
                polled.push_back({descriptor, POLLIN, 0});
            app_.appendTo(polled);
            const bool ticks =
                guard_.needsTicks() || standIn_.needsTending() || password_.isRunning();
            if (poll(polled.data(), polled.size(), isBusy ? 0 : ticks ? untilTick() : -1) < 0) {
                if (errno == EINTR) continue;
                return EXIT_FAILURE;
            }
            const bool folderChanged = polled.front().revents != 0;
            folder_.drain();
            const auto change = app_.update(polled);
            if (change == AppWatch::Change::ended) {
                standIn_.tend(false);
                guard_.appExited(*this);
                // Until the app is back, a program that has the keyboard must not receive what the
                // owner types.
                standIn_.tend(app_.isAlive());
            } else {
                if (change == AppWatch::Change::ending) {
                    standIn_.tend(false);
                    guard_.appEnds(*this);
                }
                if (folderChanged && isMarked()) {
                    adopt();
                    // The process that wrote the new marker has already ended.
                    if (!app_.isRunning()) guard_.appExited(*this);
                }
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

    bool appRuns() override { return app_.isRunning(); }
    void relaunch() override {
        app_.relaunch();
        standIn_.tend(app_.isAlive());
    }

    bool staysClosed() const override { return session_ == OrvelSystem::SessionKind::wayland; }

    void hide() override { standIn_.putUp(); }
    void reveal() override { standIn_.withdraw(); }
    void say(const std::string& text) override { standIn_.say(text); }

    void checkPassword() override {
        password_.begin(standIn_.typed(), OrvelAuth::passwordTimeout);
        standIn_.typed().clear();
        if (!password_.isRunning()) guard_.checked(*this, Guard::Verdict::unavailable);
    }

  private:
    void adopt() {
        const bool wasRunning = app_.isRunning();
        app_.adopt();
        // The display is known only from the app's environment, and each start of the app may be in
        // another session.
        if (app_.isRunning()) prepare(!wasRunning);
    }

    /// Makes what the session needs, according to the app's environment.
    void prepare(bool isNew) {
        // A session that no longer answers keeps its kind.
        if (const auto kind = isNew || !session_ ? OrvelSystem::currentSession() : session_)
            session_ = *kind;
        if (session_ == OrvelSystem::SessionKind::x11) standIn_.make();
    }

    void tick() {
        lastTick_ = now();
        adopt();
        standIn_.tend(app_.isAlive());
        guard_.tick(*this);
    }

    /// Milliseconds.
    int untilTick() const {
        const int interval = standIn_.needsTendingSoon() ? shortTickInterval : tickInterval;
        const double seconds = lastTick_ + interval / 1e3 - now();
        return seconds <= 0 ? 0 : static_cast<int>(seconds * 1e3) + 1;
    }

    FolderWatch folder_{OrvelCore::dataFolder()};
    AppWatch app_;
    /// Of the app; an error before the first one.
    std::expected<OrvelSystem::SessionKind, std::string> session_ = std::unexpected("");
    StandInWindow standIn_;
    PasswordCheckProcess password_;
    Guard guard_{bootSession()};
    double lastTick_ = 0;  // seconds of `now`
};

}  // namespace

int main() {
    // The guard must outlive the terminal and the session leader from which the app was started.
    setsid();
    for (const int number : {SIGHUP, SIGINT, SIGPIPE}) std::signal(number, SIG_IGN);
    GuardProgram program;
    // The program already watches the folder, so it sees every marker from here on.
    const OrvelSystem::UserLock lock(OrvelSystem::UserLock::guard);
    return lock.isOurs() ? program.run() : EXIT_SUCCESS;
}
