#include <security/pam_appl.h>

#include "OrvelAuth/Linux/ExtraQuestions.h"
#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"
#include "OrvelSystem/AccountIdentity.h"

#include "CurrentTest.h"
#include "PrivateSession.h"
#include "Support/TemporaryFolder.h"

// pam_wrapper, which replaces the system's PAM stacks with the test's own, must be loaded when the
// program starts. Each test therefore runs again in a child process with it.

namespace {

class PAM : public testing::Test {
  protected:
    // Returns true after a child process has run the test; its result becomes the result of this
    // test.
    static bool isDoneElsewhere() {
        if (std::getenv("PAM_WRAPPER")) return false;
        const TemporaryFolder folder;
        const auto services = folder / "pam.d";
        // The sanitizer checks that it is loaded first, but a preloaded library always comes
        // before it.
        const auto environment =
            withPam({{"PATH", "/usr/bin:/bin"},
                     {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"}},
                    folder.path());
        const auto scripted = " required " KARVO_SCRIPTED_PAM " " + (services / "script").string();
        writeText(services / "login",
                  "auth optional pam_echo.so file=" + (services / "words").string() + "\nauth" +
                      scripted + "\naccount" + scripted + "\n");
        runCurrentTestIn("/proc/self/exe", environment);
        return true;
    }

    // Writes a file that the stack's modules read: answers for `ScriptedPam.cpp`, or the text to
    // show.
    static void write(const char* name, const std::string& text) {
        writeText(std::filesystem::path(std::getenv("PAM_WRAPPER_SERVICE_DIR")) / name, text);
    }
    static void script(const std::string& text) { write("script", text); }
    static inline const std::string user = AccountIdentity::userName();
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

TEST_F(PAM, AQuestionThatIsNotForThePasswordIsNotedAndThenAnswered) {
    if (isDoneElsewhere()) return;
    const std::string right = "password with space\n";
    script(right);
    EXPECT_EQ(check("with space"), PasswordResult(PasswordAccepted{}));
    EXPECT_EQ(ExtraQuestions::takeAsked(), std::nullopt);
    script(right + "question One-time code:\nanswer 12\n");
    EXPECT_EQ(reason(check("with space 12")), "One-time code:") << "not known yet";
    EXPECT_EQ(ExtraQuestions::takeAsked(), "One-time code:");
    EXPECT_EQ(check("with space 12"), PasswordResult(PasswordAccepted{}));
    EXPECT_EQ(check("with space 13"), PasswordResult(PasswordRejected{}));
    EXPECT_EQ(check("wrong 12"), PasswordResult(PasswordRejected{}));
    EXPECT_EQ(ExtraQuestions::takeAsked(), std::nullopt) << "reported once";
    script(right);
    EXPECT_EQ(check("with space"), PasswordResult(PasswordAccepted{})) << "asked no longer";
}

TEST_F(PAM, AModulesOwnWordsGiveTheReason) {
    if (isDoneElsewhere()) return;
    write("words", "come back later");
    script("authenticate " + std::to_string(PAM_PERM_DENIED) + "\n");
    EXPECT_EQ(reason(check("right")), "come back later");
}

// The whole check with PAM stacks and files of the test instead of the system's. Only root can
// replace these files for a program.
class PasswordCheck : public testing::Test {
  protected:
    void SetUp() override {
        const Environment path{{"PATH", "/usr/bin:/bin"}};
        if (run({"unshare", "--mount", "true"}, path).status != 0)
            GTEST_SKIP() << "no right to make a mount namespace";
        std::filesystem::create_directories(folder / "pam.d");
        std::filesystem::create_directories(folder / "tally");
        writeText(folder / "script", "password right\n");
    }
    using Environment = DesktopTest::Environment;
    std::string path(const char* name) const { return (folder / name).string(); }
    std::string scripted(const char* type, const char* module = KARVO_SCRIPTED_PAM) const {
        return std::string(type) + " required " + module + " " + path("script") + "\n";
    }
    std::string check(const std::string& stack, const std::string& password) const {
        writeText(folder / "pam.d/karvo", stack);
        return run({"unshare", "--mount", "sh", "-c",
                    "mount --bind \"$0\" /etc/pam.d && printf %s \"$1\" | \"$2\" root",
                    path("pam.d"), password, KARVO_PASSWORD_CHECK},
                   {{"PATH", "/usr/bin:/bin"}, {"ASAN_OPTIONS", "detect_leaks=0"}})
            .output;
    }

    TemporaryFolder folder;
};

TEST_F(PasswordCheck, NeedsNeitherAToolkitNorAMainLoop) {
    const auto stack = scripted("auth") + scripted("account");
    EXPECT_EQ(check(stack, "right"), "accepted\n");
    EXPECT_EQ(check(stack, "wrong"), "rejected\n");
    writeText(folder / "script", "password right\nquestion Code:\n");
    EXPECT_EQ(check(stack, "right"), "unavailable: Code:\nasked for more\n");
}

TEST_F(PasswordCheck, AnAccountThatItsFailuresHaveLockedIsUnavailable) {
    writeText(folder / "faillock.conf", "deny = 2\neven_deny_root\ndir = " + path("tally") + "\n");
    const auto conf = "conf=" + path("faillock.conf");
    const auto stack = "auth requisite pam_faillock.so preauth " + conf +
                       "\nauth [success=1 default=bad] " KARVO_SCRIPTED_PAM " " + path("script") +
                       "\nauth [default=die] pam_faillock.so authfail " + conf +
                       "\nauth required pam_faillock.so authsucc " + conf +
                       "\naccount required pam_faillock.so " + conf + "\n";
    EXPECT_EQ(check(stack, "wrong"), "rejected\n");
    EXPECT_EQ(check(stack, "wrong"), "rejected\n") << "judged, though it locks the account";
    EXPECT_THAT(check(stack, "right"), testing::StartsWith("unavailable: "));
    EXPECT_THAT(check(stack, "wrong"), testing::StartsWith("unavailable: "));
}

TEST_F(PasswordCheck, AnAccountThatMayNotBeUsedIsUnavailableWhateverIsTyped) {
    // The scripted module under the name of a module whose account check changes nothing.
    const auto harmless = path("pam_access.so");
    std::filesystem::create_symlink(KARVO_SCRIPTED_PAM, harmless);
    const auto stack = scripted("auth") + scripted("account", harmless.c_str());
    EXPECT_EQ(check(stack, "wrong"), "rejected\n");
    writeText(folder / "script", "password right\naccount " + std::to_string(PAM_ACCT_EXPIRED));
    for (const char* const typed : {"right", "wrong"})
        EXPECT_EQ(check(stack, typed),
                  std::string("unavailable: ") + pam_strerror(nullptr, PAM_ACCT_EXPIRED) + "\n");
}

}  // namespace
