#include "OrvelAuth/Linux/Faillock.h"

#include "Support/TemporaryFolder.h"

namespace {

using Faillock::Settings;

TEST(Faillock, ReadsItsConfigurationAsTheModuleDoes) {
    Settings settings;
    Faillock::applyFile(
        "# deny = 1\n"
        "  deny=7   # seven\r\n"
        "\tfail_interval \t=  60\n"
        "unlock_time = never\n"
        "dir = /somewhere\n"
        "even_deny_root\n"
        "admin_group = wheel\n"
        "audit\n",
        settings);
    EXPECT_EQ(settings, (Settings{.folder = "/somewhere",
                                  .deny = 7,
                                  .failInterval = 60,
                                  .unlockTime = 0,
                                  .evenDenyRoot = true,
                                  .rootUnlockTime = {},
                                  .adminGroup = "wheel"}));
}

TEST(Faillock, KeepsItsDefaultsForWhatItCannotRead) {
    for (const char* const line :
         {"", "deny", "deny =", "deny = many", "deny = -1", "deny = 70000", "= 4",
          "deny 5x=4=", "fail_interval = x", "unlock_time =", "dir = relative", "deny.=4", "\\"}) {
        Settings settings;
        Faillock::applyFile(line, settings);
        if (std::string_view(line).starts_with("deny 5x")) {
            EXPECT_EQ(settings.deny, 5) << "the module reads the digits up to another character";
        } else {
            EXPECT_EQ(settings, Settings()) << line;
        }
    }
    Settings settings;
    Faillock::applyFile("fail_interval = 99999999999\nroot_unlock_time = 5", settings);
    EXPECT_EQ(settings.failInterval, 604800);
    EXPECT_TRUE(settings.evenDenyRoot) << "a time for the superuser implies it";
}

class FaillockStack : public testing::Test {
  protected:
    void SetUp() override { std::filesystem::create_directories(folder / "pam.d"); }

    void service(const std::string& name, const std::string& text) {
        writeText(folder / "pam.d" / name, text);
    }
    void configuration(const std::string& text) { writeText(places.configuration, text); }
    std::optional<int> limit() const { return Faillock::limit(user, places); }

    TemporaryFolder folder;
    Faillock::Places places{{folder / "missing", folder / "pam.d"}, folder / "faillock.conf"};
    Faillock::Account user{.userName = "jo"};
};

TEST_F(FaillockStack, HasALimitOnlyWhereTheModuleIsUsed) {
    EXPECT_EQ(limit(), std::nullopt);
    configuration("deny = 4");
    service("login",
            "auth required pam_unix.so\n#auth required pam_faillock.so preauth\n"
            "account required pam_faillock.so deny=2\n");
    EXPECT_EQ(limit(), std::nullopt);

    for (const char* const line :
         {"auth required pam_faillock.so authfail", "-auth required pam_faillock.so",
          "auth [success=1 default=bad] /lib/security/pam_faillock.so authfail",
          "auth required \\\n pam_faillock.so authfail"}) {
        service("login", line);
        EXPECT_EQ(limit(), 4) << line;
    }
    configuration("");
    EXPECT_EQ(limit(), 3) << "the module's own default";
    configuration("deny = 0");
    EXPECT_EQ(limit(), std::nullopt) << "never locks";
}

TEST_F(FaillockStack, FollowsIncludesAndPrefersTheProductsOwnService) {
    service("login", "@include common-auth\n");
    service("common-auth", "auth substack deeper\nauth include circle\n");
    service("deeper", "auth requisite pam_faillock.so preauth deny=9\n");
    service("circle", "auth include circle\n@include common-auth\n");
    EXPECT_EQ(limit(), 9);
    service("karvo", "auth required pam_unix.so\n");
    EXPECT_EQ(limit(), std::nullopt);
    service("karvo", "auth include " + (folder / "pam.d/deeper").string());
    EXPECT_EQ(limit(), 9);
}

TEST_F(FaillockStack, ArgumentsOverrideTheFileAndTheStrictestUseCounts) {
    configuration("deny = 4\nfail_interval = 10");
    writeText(folder / "other.conf", "deny = 8");
    service("login", "auth required pam_faillock.so preauth deny=6\n");
    EXPECT_EQ(limit(), 6);
    service("login",
            "auth required pam_faillock.so preauth deny=6\n"
            "auth required pam_faillock.so authfail deny=5\n"
            "auth required pam_faillock.so authsucc deny=0\n");
    EXPECT_EQ(limit(), 5);
    service("login",
            "auth required pam_faillock.so authfail conf=" + (folder / "other.conf").string());
    EXPECT_EQ(limit(), 8);
}

TEST_F(FaillockStack, SparesTheSuperuserAndAdminsUnlessToldOtherwise) {
    service("login", "auth required pam_faillock.so authfail\n");
    configuration("deny = 4\nadmin_group = wheel");
    Faillock::Account admin{.userName = "al",
                            .isMember = [](const std::string& group) { return group == "wheel"; }};
    Faillock::Account root{.userName = "root", .isRoot = true};
    EXPECT_EQ(limit(), 4);
    EXPECT_EQ(Faillock::limit(admin, places), std::nullopt);
    EXPECT_EQ(Faillock::limit(root, places), std::nullopt);
    configuration("deny = 4\nadmin_group = wheel\neven_deny_root");
    EXPECT_EQ(Faillock::limit(admin, places), 4);
    EXPECT_EQ(Faillock::limit(root, places), 4);
}

constexpr std::int64_t now = 1'772'351'400;

std::string record(std::int64_t time, std::uint16_t status = 1) {
    std::string bytes(64, '\0');
    std::memcpy(bytes.data() + 54, &status, sizeof(status));
    std::memcpy(bytes.data() + 56, &time, sizeof(time));
    return bytes;
}

int count(const std::string& tally, const Settings& settings = {}, bool isAdmin = false) {
    return Faillock::tally(std::as_bytes(std::span(tally)), settings, isAdmin, now).failures;
}

bool isLocked(const std::string& tally, const Settings& settings = {}, bool isAdmin = false) {
    return Faillock::tally(std::as_bytes(std::span(tally)), settings, isAdmin, now).isLocked;
}

TEST(FaillockTally, CountsValidRecentFailures) {
    EXPECT_EQ(count(""), 0);
    EXPECT_EQ(count(record(now)), 1);
    EXPECT_EQ(count(record(now, 0) + record(now - 1) + record(now, 2)), 1);
    EXPECT_EQ(count(record(now - 899) + record(now - 900)), 1);
    EXPECT_EQ(count(record(now) + record(now).substr(0, 63)), 1) << "half a record";
    EXPECT_EQ(count(record(now - 10), {.failInterval = 10}), 0);
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(count(record(last) + record(-last)), 1) << "impossible times";
}

TEST(FaillockTally, CountsWhatKeepsTheAccountLocked) {
    // Three consecutive failures, older than the period for which failures count.
    const auto old = [](std::int64_t ago) {
        return record(now - ago - 2) + record(now - ago - 1) + record(now - ago);
    };
    EXPECT_EQ(count(old(5000)), 0) << "opened again after ten minutes";
    EXPECT_EQ(count(old(5000), {.unlockTime = 0}), 3) << "stays locked for good";
    EXPECT_EQ(count(old(5000), {.deny = 4, .unlockTime = 0}), 0) << "never was locked";
    EXPECT_EQ(count(old(5000), {.unlockTime = 6000}), 3);
    EXPECT_EQ(count(old(5000), {.unlockTime = 6000, .rootUnlockTime = 60}, true), 0);
    EXPECT_EQ(count(old(700)), 3) << "open again, but one failure more locks at once";
}

TEST(FaillockTally, TellsWhenTheModuleRefusesEveryPassword) {
    const auto failures = [](std::int64_t ago, int many = 3) {
        std::string tally;
        for (int i = 0; i < many; ++i) tally += record(now - ago - i);
        return tally;
    };
    EXPECT_FALSE(isLocked(failures(0, 2)));
    EXPECT_TRUE(isLocked(failures(0)));
    EXPECT_TRUE(isLocked(failures(600)));
    EXPECT_FALSE(isLocked(failures(601))) << "open again after ten minutes, though they count";
    EXPECT_TRUE(isLocked(failures(5000), {.unlockTime = 0})) << "stays locked for good";
    EXPECT_FALSE(isLocked(failures(0), {.deny = 0}));
    EXPECT_FALSE(isLocked(failures(0), {}, true)) << "the superuser is spared";
    EXPECT_TRUE(isLocked(failures(0), {.evenDenyRoot = true}, true));
}

// A lock pauses passwords two failures before the limit that it is given.
TEST(FaillockLimit, LeavesALockThatSparesTheAccountRoomForAWrongPassword) {
    constexpr int spared = 2;
    for (const auto& [deny, stopsAfter] :
         {std::pair{1, 1}, {2, 1}, {3, 2}, {4, 2}, {5, 3}, {20, 18}}) {
        EXPECT_EQ(Faillock::sparedLimit(deny) - spared, stopsAfter) << deny;
    }
}

TEST_F(FaillockStack, ReadsTheTallyOfTheUser) {
    const auto tallies = folder / "tallies";
    std::filesystem::create_directory(tallies);
    service("login", "auth required pam_faillock.so authfail dir=" + tallies.string());
    const auto failures = [&]() -> std::optional<int> {
        const auto tally = Faillock::tally(user, places, now);
        return tally ? std::optional(tally->failures) : std::nullopt;
    };
    EXPECT_EQ(failures(), std::nullopt);
    writeText(tallies / "jo", "");
    EXPECT_EQ(failures(), 0);
    writeText(tallies / "jo", record(now) + record(now - 5));
    EXPECT_EQ(failures(), 2);
    for (const char* const name : {"", ".jo", "../tallies/jo", "../pam.d/login"}) {
        user.userName = name;
        EXPECT_EQ(failures(), std::nullopt) << name;
    }
    user.userName = "jo";
    service("login", "auth required pam_unix.so");
    EXPECT_EQ(failures(), std::nullopt) << "the tally is no longer kept";
}

}  // namespace
