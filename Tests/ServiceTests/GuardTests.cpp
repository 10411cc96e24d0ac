#include "OrvelApp/Guard/X11/StandInText.h"
#include "OrvelCore/Date.h"
#include "OrvelCore/LockMarker.h"
#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/ProcessList.h"

#include "Bus.h"
#include "Eventually.h"
#include "Process.h"
#include "Screen.h"
#include "Support/TemporaryFolder.h"
#include "XServer.h"

// The real guard executable, with a substitute for the app next to it and a substitute for the
// screen locker in the PATH. Both record that they were started.

namespace {

using DesktopTest::Process;
namespace fs = std::filesystem;

constexpr std::chrono::milliseconds quietPeriod{400};

class GuardProgram : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(folder / "app");
        fs::create_directories(folder / "bin");
        fs::copy_file(KARVO_GUARD_BINARY, folder / "app/KarvoGuard");
        fs::copy_file(KARVO_STAND_IN_APP, folder / "app/Karvo");
        fs::copy_file(KARVO_STAND_IN_APP, folder / "bin/xdg-screensaver");
        environment = {{"PATH", (folder / "bin").string() + ":/usr/bin:/bin"},
                       {"HOME", folder.path().string()},
                       {"XDG_DATA_HOME", (folder / "data").string()},
                       {"XDG_RUNTIME_DIR", folder.path().string()},
                       {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"},
                       {"STAND_IN_LOG", (folder / "log").string()}};
    }
    void TearDown() override {
        guard.reset();
        // The guard detaches the app, so find it by its file.
        for (const auto pid : ProcessList::running(folder / "app/Karvo"))
            kill(static_cast<pid_t>(pid), SIGKILL);
    }

    void startGuard() {
        guard.emplace(DesktopTest::Arguments{(folder / "app/KarvoGuard").string()}, environment,
                      folder / "guard.log");
        // The guard takes its lock after it has started to watch, so it sees every later marker.
        ASSERT_TRUE(eventually([&] { return guardHas(".lock"); }));
    }
    // A file of the guard in the runtime folder.
    bool guardHas(std::string_view extension) {
        return std::ranges::any_of(fs::directory_iterator(folder.path()), [&](const auto& entry) {
            return entry.path().filename().string().starts_with("karvo-guard-") &&
                   entry.path().extension() == extension;
        });
    }
    std::int64_t startApp(const std::string& display = ":77") {
        auto appEnvironment = environment;
        appEnvironment["DISPLAY"] = display;
        apps.emplace_back(DesktopTest::Arguments{(folder / "app/Karvo").string()}, appEnvironment);
        return awaitApp();
    }
    // The app's only process, after it has recorded its start.
    std::int64_t awaitApp() {
        std::int64_t found = 0;
        eventually([&] {
            const auto pids = ProcessList::running(folder / "app/Karvo");
            const auto said = starts();
            if (pids.size() == 1 && std::ranges::count(said, pids[0], &Start::pid)) found = pids[0];
            return found > 0;
        });
        return found;
    }
    void killApp() {
        const auto pid = awaitApp();
        ASSERT_GT(pid, 0);
        kill(static_cast<pid_t>(pid), SIGKILL);
    }
    void lock(const std::string& boot = BootSession::current()) {
        ASSERT_TRUE(markers.write({.lockedAt = Date(), .bootSession = boot}));
    }

    struct Start {
        std::string program;
        long pid;
        std::string display;
    };
    std::vector<Start> starts() const {
        std::istringstream lines(textOf(folder / "log"));
        std::vector<Start> result;
        for (Start start; lines >> start.program >> start.pid >> start.display;) {
            result.push_back(start);
        }
        // The lower process id was started first, whichever program wrote first.
        std::ranges::sort(result, {}, &Start::pid);
        return result;
    }
    std::string programs() const {
        std::string result;
        for (const auto& start : starts()) result += start.program + ' ';
        return result;
    }
    bool become(const std::string& expected) {
        return eventually([&] { return programs() == expected; });
    }
    bool stay(const std::string& expected) {
        return stays([&] { return programs() == expected; }, quietPeriod);
    }

    TemporaryFolder folder;
    DesktopTest::Environment environment;
    LockMarkerStore markers{folder / "data/Karvo/state.json"};
    std::optional<Process> guard;
    std::list<Process> apps;
};

TEST_F(GuardProgram, StartingLateItFindsWhatHappenedMeanwhile) {
    lock();
    startGuard();
    ASSERT_TRUE(become("xdg-screensaver Karvo ")) << programs();
    EXPECT_TRUE(stay("xdg-screensaver Karvo "));
}

TEST_F(GuardProgram, AnAppThatIsGoneBeforeItsMarkerIsSeenCounts) {
    startGuard();
    lock();
    EXPECT_TRUE(become("xdg-screensaver Karvo ")) << programs();
}

TEST_F(GuardProgram, ThereIsOneOfThemAndItOutlivesTheTerminal) {
    startGuard();
    Process second({(folder / "app/KarvoGuard").string()}, environment);
    EXPECT_EQ(second.waitForExit(), 0);
    guard->signal(SIGHUP);
    guard->signal(SIGINT);
    startApp();
    lock();
    killApp();
    EXPECT_TRUE(become("Karvo xdg-screensaver Karvo ")) << programs();
}

TEST_F(GuardProgram, FindsItsFolderAgainWhenItWasTakenAway) {
    startGuard();
    fs::remove_all(folder / "data/Karvo");
    ASSERT_TRUE(eventually([&] { return fs::exists(folder / "data/Karvo"); }));
    startApp();
    lock();
    ASSERT_TRUE(stay("Karvo "));
    killApp();
    EXPECT_TRUE(become("Karvo xdg-screensaver Karvo ")) << programs();
}

TEST_F(GuardProgram, HidesTheScreenBeforeTheKernelHasEndedTheApp) {
    const DesktopTest::XServer server;
    DesktopTest::Screen screen(server.display());
    startGuard();
    const auto app = static_cast<pid_t>(startApp(server.display()));
    lock();
    const DesktopTest::Area middle{300, 200, 100, 100};
    const auto isHidden = [&] {
        return screen.picture(middle).shareOf(OrvelApp::StandInText::background) == 1;
    };
    // The guard watches the app once it has seen the marker, and then stores its environment.
    ASSERT_TRUE(eventually([&] { return guardHas(".environment"); }));
    EXPECT_FALSE(isHidden());
    kill(app, SIGUSR1);
    EXPECT_TRUE(eventually(isHidden));
    EXPECT_TRUE(stay("Karvo ")) << "the app still runs";
    kill(app, SIGKILL);
    EXPECT_TRUE(become("Karvo xdg-screensaver Karvo ")) << programs();
}

TEST_F(GuardProgram, AsksLogindAndThenTheFallback) {
    Bus& bus = Bus::shared();
    Logind logind(bus.connection(), bus.environment(), bus.log("logind"));
    environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.connection().address();
    environment["XDG_SESSION_ID"] = "1";
    startGuard();
    startApp();
    lock();
    killApp();
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == 1; }));
    EXPECT_TRUE(become("Karvo Karvo xdg-screensaver ")) << programs();

    // If a locker responds to logind, the guard needs no other way.
    lock();
    logind.setLockedHint(true);
    killApp();
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == 2; }));
    // The guard gives the locker two seconds before it uses the other way.
    EXPECT_TRUE(stays([&] { return programs() == "Karvo Karvo xdg-screensaver "; },
                      std::chrono::seconds(3)));
}

}  // namespace
