#include <cstdlib>

#include <gtest/gtest.h>
#include <security/pam_appl.h>

#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"
#include "OrvelSystem/AccountIdentity.h"

#include "Process.h"
#include "Support/TemporaryFolder.h"

// The wrapper that puts a stack of the test's own in the place of the system's must be there when
// the program starts, so each of these tests runs again in a child process under it.

namespace {

using namespace OrvelAuth;
using OrvelSystem::Password;

class PAM : public testing::Test {
  protected:
    // True when the test has been left to a child process, whose verdict is then this one's.
    static bool isDoneElsewhere() {
        if (std::getenv("PAM_WRAPPER")) return false;
        const TemporaryFolder services;
        const auto test = std::string("--gtest_filter=PAM.") +
                          testing::UnitTest::GetInstance()->current_test_info()->name();
        DesktopTest::Environment environment{
            {"PATH", "/usr/bin:/bin"},
            {"LD_PRELOAD", "libpam_wrapper.so"},
            {"PAM_WRAPPER", "1"},
            {"PAM_WRAPPER_SERVICE_DIR", services.path().string()},
            // The sanitizer refuses that way of loading; this is what pam_wrapper really reads.
            {"UID_WRAPPER_DISABLE_DEEPBIND", "1"},
            // The sanitizer wants to be first, which a preloaded library always is.
            {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"},
        };
        const auto scripted = " required " KARVO_SCRIPTED_PAM " " + (services / "script").string();
        writeText(services / "login",
                  "auth optional pam_echo.so file=" + (services / "words").string() + "\nauth" +
                      scripted + "\naccount" + scripted + "\n");
        const auto finished = DesktopTest::run({"/proc/self/exe", test}, environment);
        EXPECT_EQ(finished.status, 0) << finished.output;
        EXPECT_NE(finished.output.find("[  PASSED  ] 1 test"), std::string::npos)
            << finished.output;
        return true;
    }

    // What the modules of the stack find: answers, as `ScriptedPam.cpp` reads them, and words.
    static void write(const char* name, const std::string& text) {
        writeText(std::filesystem::path(std::getenv("PAM_WRAPPER_SERVICE_DIR")) / name, text);
    }
    static void script(const std::string& text) { write("script", text); }
    static inline const std::string user = OrvelSystem::AccountIdentity::userName();
    static PasswordResult check(std::string_view password) {
        return OpenDirectoryPasswordVerifier::verifyNow(Password(password), user);
    }
    static std::string reason(const PasswordResult& result) {
        const auto* const unavailable = std::get_if<PasswordUnavailable>(&result);
        return unavailable ? unavailable->reason : "(a verdict)";
    }
};

TEST_F(PAM, TellsTheRightPasswordFromAllOthers) {
    if (isDoneElsewhere()) return;
    script("password open sesame\n");
    EXPECT_EQ(check("open sesame"), PasswordResult(PasswordAccepted{}));
    for (const auto wrong :
         {std::string_view("open"), std::string_view(""), std::string_view("open sesame "),
          std::string_view("open sesame\0", 12)}) {
        EXPECT_EQ(check(wrong), PasswordResult(PasswordRejected{})) << wrong;
    }
}

TEST_F(PAM, OnlyAWrongPasswordIsRejected) {
    if (isDoneElsewhere()) return;
    for (const int code : {PAM_MAXTRIES, PAM_AUTHINFO_UNAVAIL, PAM_PERM_DENIED, PAM_ACCT_EXPIRED,
                           PAM_CRED_INSUFFICIENT, PAM_SYSTEM_ERR, PAM_ABORT}) {
        script("password right\nauthenticate " + std::to_string(code) + "\n");
        EXPECT_EQ(reason(check("right")), pam_strerror(nullptr, code)) << code;
    }
    script("authenticate " + std::to_string(PAM_USER_UNKNOWN) + "\n");
    EXPECT_EQ(reason(check("right")), "no account record for " + user);
}

TEST_F(PAM, AnUnknownAccountHasNoRecord) {
    if (isDoneElsewhere()) return;
    script("password right\n");
    EXPECT_EQ(reason(OpenDirectoryPasswordVerifier::verifyNow(Password("right"), "no-such-user")),
              "no account record for no-such-user");
}

TEST_F(PAM, TheAccountMustBeUsableButItsPasswordMayBeOld) {
    if (isDoneElsewhere()) return;
    const auto account = [](int code) {
        script("password right\naccount " + std::to_string(code) + "\n");
        return check("right");
    };
    EXPECT_EQ(account(PAM_NEW_AUTHTOK_REQD), PasswordResult(PasswordAccepted{}));
    for (const int code : {PAM_ACCT_EXPIRED, PAM_PERM_DENIED, PAM_AUTH_ERR}) {
        EXPECT_EQ(reason(account(code)), pam_strerror(nullptr, code)) << code;
    }
    EXPECT_EQ(reason(account(PAM_USER_UNKNOWN)), "no account record for " + user);
    EXPECT_EQ(check("wrong"), PasswordResult(PasswordRejected{}));
}

TEST_F(PAM, AModulesOwnWordsGiveTheReason) {
    if (isDoneElsewhere()) return;
    write("words", "come back later");
    script("authenticate " + std::to_string(PAM_PERM_DENIED) + "\n");
    EXPECT_EQ(reason(check("right")), "come back later");
}

}  // namespace
