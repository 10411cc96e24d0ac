#include <sys/wait.h>

#include "OrvelSystem/AccountIdentity.h"
#include "OrvelSystem/Linux/AccountComment.h"
#include "OrvelSystem/Linux/SessionLocker.h"
#include "OrvelSystem/Linux/Spawn.h"
#include "OrvelSystem/ProcessList.h"

#include "Support/MainLoopChecks.h"
#include "Support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

// A running program with a unique name.
class SleepingProgram {
  public:
    explicit SleepingProgram(const fs::path& file) {
        fs::copy_file("/bin/sleep", file);
        const auto started = spawnDetached({file.string(), "60"});
        EXPECT_TRUE(started);
        pid_ = started.value_or(0);
    }
    ~SleepingProgram() {
        if (pid_ > 0) kill(pid_, SIGKILL);
    }
    SleepingProgram(const SleepingProgram&) = delete;
    SleepingProgram& operator=(const SleepingProgram&) = delete;

    pid_t pid() const { return pid_; }

  private:
    pid_t pid_ = 0;
};

TEST(SessionLocker, IsKnownByItsProcessOnThisDisplay) {
    EXPECT_TRUE(SessionLocker::isLocker("light-locker"));
    EXPECT_TRUE(SessionLocker::isLocker("xscreensaver-sy")) << "as the kernel truncates it";
    EXPECT_FALSE(SessionLocker::isLocker("i3lock")) << "it listens to no request";
    EXPECT_FALSE(SessionLocker::isLocker(""));
    using namespace std::string_view_literals;
    EXPECT_TRUE(SessionLocker::sharesDisplay("A=1\0DISPLAY=:1\0"sv, ":1.0"));
    EXPECT_FALSE(SessionLocker::sharesDisplay("DISPLAY=:10\0A=1\0"sv, ":1"));
    EXPECT_TRUE(SessionLocker::sharesDisplay("XDISPLAY=:10\0"sv, ":1")) << "it names no display";

    // Avoid the bus and the lockers of the desktop that runs this test.
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    setenv("DISPLAY", ":70707", 1);
    const TemporaryFolder folder;
    EXPECT_FALSE(SessionLocker::isKnown());
    {
        const SleepingProgram locker(folder / "xss-lock");
        EXPECT_TRUE(eventually([] {}, [] { return SessionLocker::isKnown(); }));
        setenv("DISPLAY", ":70708", 1);
        EXPECT_FALSE(SessionLocker::isKnown()) << "locks another display";
    }
}

TEST(ProcessList, FindsAProgramByWhateverNameLeadsToItsFile) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    fs::create_directory_symlink("real", folder / "alias");
    fs::create_symlink(folder / "alias/Program", folder / "Link");
    fs::copy_file("/bin/sleep", folder / "Other");

    EXPECT_FALSE(ProcessList::isRunning(folder / "real/Program")) << "no such file";
    const SleepingProgram program(folder / "real/Program");
    for (const char* const name :
         {"real/Program", "alias/Program", "Link", "real/../real/Program"}) {
        EXPECT_EQ(ProcessList::running(folder / name), std::vector<std::int64_t>{program.pid()})
            << name;
    }
    EXPECT_FALSE(ProcessList::isRunning(folder / "Other"));

    // An update replaces the file of a running program in the same way.
    fs::remove(folder / "real/Program");
    fs::copy_file("/bin/sleep", folder / "real/Program");
    EXPECT_TRUE(ProcessList::isRunning(folder / "real/Program"));
}

TEST(Spawn, DetachesFromItsStarterAndTellsWhatCouldNotStart) {
    const TemporaryFolder folder;
    const SleepingProgram program(folder / "Program");
    EXPECT_NE(getpgid(program.pid()), getpgrp());
    EXPECT_EQ(waitpid(program.pid(), nullptr, WNOHANG), -1) << "it is not a child of this process";

    EXPECT_EQ(spawnDetached({(folder / "Missing").string()}).error(),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(spawnDetached({folder.path().string()}).error(), std::errc::permission_denied);

    EXPECT_EQ(runToEnd({"sh", "-c", "exit 3"}), 3);
    EXPECT_EQ(runToEnd({"sh", "-c", "kill -9 $$"}), -1);
    EXPECT_FALSE(runToEnd({"karvo-no-such-program"}));
}

TEST(AccountIdentity, TakesTheFullNameFromTheCommentField) {
    const std::tuple<const char*, const char*, const char*> table[] = {
        {"Jo Doe,Room 1,555", "jo", "Jo Doe"},
        {"Jo Doe", "jo", "Jo Doe"},
        {"", "jo", ""},
        {",,,", "jo", ""},
        {"  ,x", "jo", ""},
        {"& Doe", "jo", "Jo Doe"},
        {"&", "élan", "élan"},
    };
    for (const auto& [comment, user, name] : table) {
        EXPECT_EQ(fullNameOf(comment, user), name) << comment;
    }
    EXPECT_FALSE(AccountIdentity::userName().empty());
    EXPECT_FALSE(AccountIdentity::fullName().empty());
}

}  // namespace
