#include "OrvelAuth/Linux/ExtraQuestions.h"
#include "OrvelAuth/Linux/PAMPasswordCheck.h"

#include "Support/TemporaryFolder.h"

namespace {

PAMStack stack(const std::string& lines) {
    static const TemporaryFolder folder;
    writeText(folder / "login", lines);
    return PAMStack::read({folder.path()});
}

TEST(PAMCheck, OnlyAWrongPasswordOfAnAccountInUseIsRejected) {
    enum Verdict { accepted, rejected, unavailable };
    constexpr int none = -1;
    struct Row {
        int authentication, account;
        bool isLocked, isBarred;
        Verdict verdict;
    };
    const Row table[] = {
        {PAM_SUCCESS, PAM_SUCCESS, false, false, accepted},
        {PAM_SUCCESS, PAM_NEW_AUTHTOK_REQD, false, false, accepted},
        // PAM decides; the files only explain a refusal.
        {PAM_SUCCESS, PAM_SUCCESS, true, true, accepted},
        {PAM_SUCCESS, none, false, false, unavailable},
        {PAM_SUCCESS, PAM_AUTH_ERR, false, false, unavailable},
        {PAM_SUCCESS, PAM_ACCT_EXPIRED, false, false, unavailable},
        {PAM_AUTH_ERR, none, false, false, rejected},
        {PAM_AUTH_ERR, none, true, false, unavailable},
        {PAM_AUTH_ERR, none, false, true, unavailable},
        {PAM_AUTH_ERR, PAM_SUCCESS, false, false, rejected},
        {PAM_AUTH_ERR, PAM_SUCCESS, true, false, unavailable},
        {PAM_AUTH_ERR, PAM_NEW_AUTHTOK_REQD, false, false, rejected},
        {PAM_AUTH_ERR, PAM_ACCT_EXPIRED, false, false, unavailable},
        {PAM_AUTH_ERR, PAM_PERM_DENIED, false, false, unavailable},
        {PAM_AUTH_ERR, PAM_AUTH_ERR, false, false, unavailable},
        // A failed account check must not make wrong guesses free.
        {PAM_AUTH_ERR, PAM_AUTHINFO_UNAVAIL, false, false, rejected},
        {PAM_AUTH_ERR, PAM_SYSTEM_ERR, false, false, rejected},
        {PAM_MAXTRIES, none, false, false, unavailable},
        {PAM_CONV_ERR, none, false, false, unavailable},
        {PAM_ACCT_EXPIRED, none, false, false, unavailable},
        {PAM_USER_UNKNOWN, none, false, false, unavailable},
    };
    for (const auto& row : table) {
        const auto result = passwordResult(
            {.userName = "jo",
             .authentication = row.authentication,
             .account = row.account == none ? std::nullopt : std::optional(row.account),
             .accountIsLocked = row.isLocked,
             .loginsAreBarred = row.isBarred});
        EXPECT_EQ(result.index(), static_cast<std::size_t>(row.verdict))
            << row.authentication << ' ' << row.account;
    }
}

TEST(PAMCheck, LooksAtARefusedAccountOnlyWhereThatChangesNothing) {
    EXPECT_TRUE(mayCheckAccountAfterRefusal(
        stack("account [success=1 default=ignore] pam_unix.so\naccount requisite pam_deny.so\n"
              "auth required pam_faillock.so\n")));
    for (const char* const module : {"pam_faillock.so", "pam_tally2.so", "pam_something.so"}) {
        EXPECT_FALSE(mayCheckAccountAfterRefusal(
            stack("account required pam_unix.so\naccount required " + std::string(module))))
            << module;
    }
}

TEST(PAMCheck, KnowsTheModulesThatAskForMoreThanAPassword) {
    const TemporaryFolder home;
    const auto asks = [&](const std::string& lines) {
        return ExtraQuestions::areExpected(stack(lines), home.path());
    };
    EXPECT_FALSE(asks("auth required pam_unix.so\nauth optional pam_cap.so\n"));
    EXPECT_TRUE(asks("auth required pam_unix.so\nauth required pam_google_authenticator.so\n"));
    EXPECT_TRUE(asks("auth requisite pam_oath.so usersfile=/etc/users.oath\n"));
    EXPECT_FALSE(asks("account required pam_duo.so\n")) << "not for the password";
    EXPECT_FALSE(
        asks("auth required pam_google_authenticator.so forward_pass\n"
             "auth required pam_unix.so use_first_pass\n"))
        << "one text is both";
    EXPECT_FALSE(asks("auth sufficient pam_unix.so\nauth required pam_oath.so\n"))
        << "asked only when the password is wrong";
    EXPECT_FALSE(asks("auth required pam_google_authenticator.so nullok\n")) << "not set up";
    writeText(home / ".google_authenticator", "secret");
    EXPECT_TRUE(asks("auth required pam_google_authenticator.so nullok\n"));
}

TEST(PAMCheck, RemembersAQuestionForAsLongAsTheStackStaysTheSame) {
    InMemorySettingsStore store;
    ExtraQuestions::Memory memory(store);
    const auto asking = stack("auth required pam_unix.so\nauth required pam_own.so ask\n");
    EXPECT_FALSE(memory.remembers(asking));
    EXPECT_FALSE(memory.remembers(PAMStack()));
    memory.remember(asking);
    EXPECT_TRUE(memory.remembers(asking));
    EXPECT_FALSE(memory.remembers(stack("auth required pam_unix.so\nauth required pam_own.so\n")));
    EXPECT_FALSE(
        memory.remembers(stack("auth required pam_unix.so\nauth sufficient pam_own.so ask\n")));
}

}  // namespace
