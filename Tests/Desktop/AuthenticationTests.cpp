// How the card handles the answers of PAM, the account and the fingerprint reader.
#include <ctime>

#include <security/_pam_types.h>

#include "LockDesk.h"

namespace {

Desktop::Options withReader() {
    auto options = LockDesk::oneDisplay();
    options.fingerprintReader = true;
    return options;
}

/// The program looks for the reader only at its start, and a lock uses that result.
void startWithReader(LockDesk& desk) {
    desk.start();
    ASSERT_TRUE(eventually(
        [&] { return desk.desktop.fingerprintReader().calls("ListEnrolledFingers") > 0; }));
    ASSERT_TRUE(desk.karvo().waitUntilReady());
}

std::string script(const std::string& more = "") {
    return std::string("password ") + Desktop::password + "\n" + more;
}

TEST(LockPassword, AnAccountThatAsksForMoreGetsAnAnswerAndIsLeftToTheSessionsLockerFromThenOn) {
    LockDesk desk(LockDesk::oneDisplay());
    auto& logind = desk.desktop.logind();
    desk.start();
    desk.desktop.setPam(script("question One-time code:\nanswer 12\n"));
    ASSERT_TRUE(desk.lockByShortcut());
    desk.submit(Desktop::password);
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == 1; }));
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_EQ(desk.attempts(), 0);
    ASSERT_TRUE(desk.cardSays(onlyDisplay, "a space and"));
    desk.submit(std::string(Desktop::password) + " 12");
    ASSERT_TRUE(eventually([&] { return desk.isOpen(); }));

    desk.screen().press({XK_Super_L, XK_l});
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == 2; }));
    EXPECT_FALSE(std::filesystem::exists(desk.karvo().markerFile())) << "a lock of its own runs";
}

// The account's limit

/// An account with recent failures, of which pam_faillock allows `deny`. Its configuration and
/// tally are visible to the program only.
class AccountNearLimit {
  public:
    explicit AccountNearLimit(Desktop& desktop, int deny = 5)
        : folder_(desktop.folder() / "faillock") {
        std::filesystem::create_directories(folder_ / "pam.d");
        std::filesystem::create_directories(folder_ / "tally");
        writeText(folder_ / "faillock.conf",
                  "deny = " + std::to_string(deny) +
                      "\neven_deny_root\ndir = " + (folder_ / "tally").string() + "\n");
        writeText(folder_ / "pam.d/karvo", "auth required pam_faillock.so preauth conf=" +
                                               (folder_ / "faillock.conf").string() + "\n");
        tally_ = folder_ / "tally" / desktop.environment().at("USER");
    }

    void setFailures(int count) {
        struct Record {
            char source[52];
            std::uint16_t reserved, status;
            std::uint64_t time;
        } record{};
        record.status = 1;
        record.time = static_cast<std::uint64_t>(std::time(nullptr));
        std::string bytes(sizeof record, '\0');
        std::memcpy(bytes.data(), &record, sizeof record);
        std::string all;
        for (int i = 0; i < count; ++i) all += bytes;
        writeText(tally_, all);
    }

    /// Only root can replace files in a private mount namespace.
    static bool canBeShown() {
        return run({"unshare", "--mount", "true"}, {{"PATH", "/usr/bin:/bin"}}).status == 0;
    }
    Karvo::Options seenByKarvo() const {
        Karvo::Options options;
        options.wrapper = {"unshare",
                           "--mount",
                           "sh",
                           "-c",
                           "mount --bind \"$0\" /etc/pam.d && exec \"$@\"",
                           (folder_ / "pam.d").string()};
        return options;
    }

  private:
    std::filesystem::path folder_;
    std::filesystem::path tally_;
};

#define NEEDS_OTHER_FILES()              \
    if (!AccountNearLimit::canBeShown()) \
    GTEST_SKIP() << "no right to make a mount namespace, so the account's files can't be replaced"

/// Announces a session locker that never answers. Passwords are paused only if there is another way
/// to unlock.
void announceLocker(Desktop& desktop) {
    ASSERT_GE(sd_bus_request_name(desktop.sessionBus().connection(), "org.xfce.ScreenSaver", 0), 0);
}

TEST(LockAccount, NearItsLimitWithoutAReaderTheLockIsHandedOff) {
    NEEDS_OTHER_FILES();
    LockDesk desk;
    auto& logind = desk.desktop.logind();
    AccountNearLimit account(desk.desktop);
    announceLocker(desk.desktop);
    account.setFailures(3);
    desk.start(account.seenByKarvo());
    ASSERT_TRUE(desk.lockByShortcut());
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == 1; }));
    // No locker confirms the lock, so the card returns, but it refuses passwords.
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    EXPECT_TRUE(eventually([&] { return desk.screen().keyboardIsGrabbed(); }));
    desk.submit(Desktop::password);
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == 2; }));
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_EQ(desk.attempts(), 0);

    account.setFailures(2);
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    EXPECT_TRUE(eventually([&] { return desk.screen().keyboardIsGrabbed(); }));
    // A third failure would come too close to the account's limit.
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.unlock());
}

// The fingerprint reader

TEST(LockFingerprint, AnotherFingerIsTriedAgainAndTheRightOneOpens) {
    LockDesk desk(withReader());
    auto& reader = desk.desktop.fingerprintReader();
    startWithReader(desk);
    ASSERT_TRUE(desk.lockByShortcut());
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "fingerprint or password"));
    desk.desktop.keepPicture("reader");
    ASSERT_TRUE(eventually([&] { return reader.isVerifying(); }));
    const int begun = reader.calls("VerifyStart");
    reader.report("verify-no-match", true);
    EXPECT_TRUE(eventually([&] { return reader.calls("VerifyStart") == begun + 1; }));
    EXPECT_TRUE(desk.isCovered());
    // Neither counts as a failed password; a badly placed finger does not even end the
    // verification.
    EXPECT_EQ(desk.attempts(), 0);
    reader.report("verify-retry-scan", false);
    EXPECT_TRUE(desk.staysCovered());
    reader.report("verify-match", true);
    EXPECT_TRUE(eventually([&] { return desk.isOpen(); }));
    EXPECT_TRUE(eventually([&] { return !reader.isVerifying(); }));
    EXPECT_TRUE(eventually([&] { return reader.calls("Release") == reader.calls("Claim"); }));
    EXPECT_TRUE(desk.typesIntoWindow());
}

}  // namespace
