#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/ProcessList.h"

#include "CurrentTest.h"
#include "Eventually.h"
#include "Support/TemporaryFolder.h"

// The service looks for the guard next to the program's own file. Each test therefore runs again in
// a copy of this program, with a guard next to it, its own home, and a script that replaces
// systemctl and records its arguments.

namespace {

namespace fs = std::filesystem;

class GuardServiceTest : public testing::Test {
  protected:
    // Returns true after a child process has run the test; its result becomes the result of this
    // test.
    static bool isDoneElsewhere() {
        if (std::getenv("GUARD_SERVICE_TEST")) return false;
        const TemporaryFolder folder;
        fs::create_directories(folder / "bin");
        fs::create_directories(folder / "app");
        fs::copy_file("/proc/self/exe", folder / "app/Tests");
        fs::copy_file(KARVO_GUARD_BINARY, folder / "app/KarvoGuard");
        writeText(folder / "bin/systemctl",
                  "#!/bin/sh\necho \"$@\" >> \"$HOME/asked\"\n"
                  "exit $(cat \"$HOME/status\" 2>/dev/null || echo 0)\n");
        fs::permissions(folder / "bin/systemctl", fs::perms::owner_all);
        const auto home = folder.path().string();
        runCurrentTestIn(folder / "app/Tests",
                         {{"PATH", home + "/bin:/usr/bin:/bin"},
                          {"HOME", home},
                          {"XDG_RUNTIME_DIR", home},
                          {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"},
                          {"GUARD_SERVICE_TEST", "1"}});
        for (const auto pid : ProcessList::running(folder / "app/KarvoGuard")) {
            kill(static_cast<pid_t>(pid), SIGKILL);
        }
        return true;
    }

    static fs::path home() { return std::getenv("HOME"); }
    static std::string asked() { return textOf(home() / "asked"); }
    static bool guardRuns() { return ProcessList::isRunning(GuardService::executable()); }
    static void installUnit() {
        fs::create_directories(units);
        writeText(units / "karvo-guard.service", "[Service]\n");
        fs::create_directories(home() / "systemd");
        writeText(home() / "systemd/private", "");
    }

    static inline const fs::path units =
        fs::path(std::getenv("HOME") ? std::getenv("HOME") : "/") / ".config/systemd/user";
};

TEST_F(GuardServiceTest, WithoutAUserManagerTheProgramStartsTheGuardItself) {
    if (isDoneElsewhere()) return;
    EXPECT_TRUE(GuardService::isEnabled());
    EXPECT_FALSE(GuardService::registerService());
    GuardService::kickstart();
    EXPECT_TRUE(eventually(guardRuns));
    const auto first = ProcessList::running(GuardService::executable());
    GuardService::kickstart();
    EXPECT_EQ(ProcessList::running(GuardService::executable()), first);
    EXPECT_EQ(asked(), "");

    GuardService::unregisterService();
    EXPECT_TRUE(eventually([] { return !guardRuns(); }));
    fs::remove(GuardService::executable());
    EXPECT_FALSE(GuardService::isEnabled());
    EXPECT_EQ(GuardService::registerService(), std::errc::no_such_file_or_directory);
}

TEST_F(GuardServiceTest, AGuardOfAnOlderVersionIsReplacedOnlyWhenAsked) {
    if (isDoneElsewhere()) return;
    const auto guard = GuardService::executable();
    GuardService::kickstart();
    ASSERT_TRUE(eventually(guardRuns));
    const auto old = ProcessList::running(guard);
    GuardService::renew();
    EXPECT_EQ(ProcessList::running(guard), old) << "its file is the same";

    fs::copy_file(guard, guard.string() + ".new");
    fs::rename(guard.string() + ".new", guard);
    GuardService::kickstart();
    EXPECT_EQ(ProcessList::running(guard), old) << "it may be what covers the screen";
    GuardService::renew();
    EXPECT_TRUE(eventually(guardRuns));
    EXPECT_TRUE(ProcessList::outdated(guard).empty());
}

TEST_F(GuardServiceTest, TheUserManagerIsAskedWhereItKnowsTheUnit) {
    if (isDoneElsewhere()) return;
    installUnit();
    EXPECT_FALSE(GuardService::isEnabled());
    EXPECT_FALSE(GuardService::registerService());
    EXPECT_EQ(asked(), "--user enable karvo-guard.service\n");
    fs::create_directories(units / "graphical-session.target.wants");
    fs::create_symlink(units / "karvo-guard.service",
                       units / "graphical-session.target.wants/karvo-guard.service");
    EXPECT_TRUE(GuardService::isEnabled());

    // If systemctl succeeds but no guard of this program starts, the guard is started directly.
    fs::remove(home() / "asked");
    GuardService::kickstart();
    EXPECT_EQ(asked(), "--user start karvo-guard.service\n");
    EXPECT_TRUE(eventually(guardRuns));
    GuardService::unregisterService();
    EXPECT_EQ(asked(),
              "--user start karvo-guard.service\n--user disable --now karvo-guard.service\n");

    writeText(home() / "status", "1");
    EXPECT_TRUE(GuardService::registerService());
}

TEST_F(GuardServiceTest, AMaskedUnitIsRespected) {
    if (isDoneElsewhere()) return;
    fs::create_directories(units);
    fs::create_symlink("/dev/null", units / "karvo-guard.service");
    EXPECT_FALSE(GuardService::isEnabled());
    EXPECT_EQ(GuardService::registerService(), std::errc::operation_not_permitted);
    EXPECT_EQ(asked(), "");
}

}  // namespace
