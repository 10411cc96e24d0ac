// The judge is judged first: when one of these fails, no other desktop test says anything.
#include <algorithm>

#include <gtest/gtest.h>
#include <security/_pam_types.h>

#include "Desktop.h"

namespace DesktopTest {
namespace {

/// A method call on the private system bus by a program of its own.
Finished call(Desktop& desktop, const std::string& service, const Arguments& what) {
    Arguments arguments{"dbus-send", "--bus=" + desktop.environment().at("DBUS_SYSTEM_BUS_ADDRESS"),
                        "--print-reply", "--dest=" + service};
    arguments.insert(arguments.end(), what.begin(), what.end());
    return run(arguments, desktop.environment());
}

class HarnessInput : public testing::TestWithParam<bool> {};

TEST_P(HarnessInput, KeysAndClicksReachTheWindowThatListens) {
    Desktop::Options options;
    options.realDevices = GetParam();
    Desktop desktop(options);
    auto& screen = desktop.screen();
    EXPECT_EQ(screen.bounds(), (Area{0, 0, options.width, options.height}));
    auto& window = desktop.addWindow({300, 300, 500, 300});
    screen.click(500, 450);
    ASSERT_TRUE(eventually([&] { return window.hasFocus(); }));
    EXPECT_TRUE(eventually([&] { return window.clicks() == 1; }));
    screen.type("aB!");
    // Shift is a key too.
    EXPECT_TRUE(eventually([&] { return window.keyPresses() == 5; }));

    ASSERT_FALSE(screen.keyboardIsGrabbed());
    auto& menu = desktop.addWindow({600, 400, 100, 100}, 0xff00ff, SampleWindow::Kind::popup);
    ASSERT_TRUE(menu.grab());
    EXPECT_TRUE(screen.keyboardIsGrabbed());
    screen.type("x");
    EXPECT_TRUE(eventually([&] { return menu.keyPresses() == 1; }));
    EXPECT_EQ(window.keyPresses(), 5);
    menu.ungrab();

    EXPECT_EQ(screen.held(), "");
    for (const int keyboard : {1, 0}) {
        if (options.realDevices) desktop.devices().useKeyboard(keyboard);
        screen.keyDown(XK_a);
        EXPECT_NE(screen.held(), "");
        screen.keyUp(XK_a);
        EXPECT_EQ(screen.held(), "");
    }
    EXPECT_TRUE(eventually([&] { return window.keyPresses() == 7; }));
}

INSTANTIATE_TEST_SUITE_P(All, HarnessInput, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "RealDevices" : "XTest"; });

TEST(Harness, ReadsTextOfEverySizeFromTheScreen) {
    Desktop desktop;
    for (const bool lightOnDark : {false, true})
        for (const int points : {10, 18}) {
            const auto title = "text" + std::to_string(points) + (lightOnDark ? "dark" : "light");
            const Area place = desktop.showText("Quarterly salary review\nmeeting with Margaret",
                                                points, 200, 200, lightOnDark, title);
            const auto picture = desktop.screen().picture(place);
            const auto words = readWords(picture);
            for (const char* word : {"salary", "margaret"})
                EXPECT_NE(std::ranges::find(words, word), words.end())
                    << word << " at " << points << " points, light on dark: " << lightOnDark;
            EXPECT_GT(picture.sharpness(), 1);
        }
}

TEST(Harness, DisplaysComeChangeAndGo) {
    Desktop desktop(Desktop::twoDisplays());
    auto& screen = desktop.screen();
    const Display left{"Left", {0, 0, 1920, 1080}};
    const Display right{"Right", {1920, 0, 1920, 1080}};
    EXPECT_EQ(screen.displays(), (std::vector{left, right}));

    const Display smaller{"Right", {1920, 0, 1280, 720}};
    screen.setDisplays({left, smaller});
    EXPECT_EQ(screen.displays(), (std::vector{left, smaller}));
    screen.setDisplays({right});
    EXPECT_EQ(screen.displays(), std::vector{right});
    screen.setDisplays({left, right});
    EXPECT_EQ(screen.displays(), (std::vector{left, right}));

    desktop.addWindow({2400, 300, 200, 200}, 0x00ff00);
    EXPECT_EQ(screen.picture({2450, 400, 50, 50}).shareOf(0x00ff00), 1);
    EXPECT_EQ(difference(screen.picture({0, 0, 400, 400}), testPattern(400, 400)), 0);
}

TEST(Harness, LogindTellsWhatItWasAskedAndSignalsIt) {
    Desktop desktop;
    auto& logind = desktop.logind();
    const auto ask = [&](const Arguments& what) {
        return call(desktop, "org.freedesktop.login1", what).status;
    };
    EXPECT_EQ(logind.lockRequests(), 0);
    EXPECT_EQ(
        ask({"/org/freedesktop/login1", "org.freedesktop.login1.Manager.LockSession", "string:1"}),
        0);
    EXPECT_TRUE(eventually([&] { return logind.lockRequests() == 1; }));
    logind.setLockedHint(true);
    EXPECT_TRUE(logind.lockedHint());
    logind.prepareForSleep(true);
    logind.setActive(false);
    EXPECT_TRUE(logind.inhibitors().empty());
}

TEST(Harness, PamAnswersByScript) {
    Desktop desktop;
    struct Case {
        const char* script;
        const char* password;
        int answer;
    };
    const Case cases[] = {
        {"password tiger\n", "tiger", PAM_SUCCESS},
        {"password tiger\n", "lion", PAM_AUTH_ERR},
        {"password two words\n", "two words", PAM_SUCCESS},
        {"password tiger\naccount 13\n", "tiger", PAM_ACCT_EXPIRED},
        {"authenticate 10\n", "tiger", PAM_USER_UNKNOWN},
        {"password tiger\ndelay 1\n", "tiger", PAM_SUCCESS},
    };
    for (const auto& [script, password, answer] : cases) {
        desktop.setPam(script);
        EXPECT_EQ(
            run({KARVO_PAM_CHECK, "karvo", "root", password}, desktop.environmentWithPam()).status,
            answer)
            << script;
    }
}

TEST(Harness, TheFingerprintReaderReportsWhatTheTestTells) {
    Desktop::Options options;
    options.fingerprintReader = true;
    Desktop desktop(options);
    EXPECT_FALSE(desktop.fingerprintReader().isVerifying());
    const auto ask = [&](const std::string& method, const std::string& argument) {
        Arguments what{"/net/reactivated/Fprint/Device/0",
                       "net.reactivated.Fprint.Device." + method};
        if (!argument.empty()) what.push_back("string:" + argument);
        return call(desktop, "net.reactivated.Fprint", what).status;
    };
    EXPECT_NE(ask("VerifyStart", "any"), 0);
    EXPECT_EQ(ask("Claim", "root"), 0);
    EXPECT_EQ(ask("VerifyStart", "any"), 0);
    EXPECT_TRUE(desktop.fingerprintReader().isVerifying());
    desktop.fingerprintReader().report("verify-no-match", true);
    EXPECT_EQ(ask("VerifyStop", ""), 0);
    EXPECT_EQ(desktop.fingerprintReader().calls("VerifyStart"), 2);
}

TEST(Harness, EndsWhatDetachedItself) {
    std::filesystem::path folder;
    const std::filesystem::path sleeper = std::filesystem::canonical("/usr/bin/sleep");
    {
        Desktop desktop;
        folder = desktop.folder();
        desktop.start({"setsid", "-f", "sleep", "100000"}, "detached");
        ASSERT_TRUE(eventually([&] { return descendantsRunning(sleeper).size() == 1; }));
    }
    EXPECT_TRUE(descendantsRunning(sleeper).empty());
    EXPECT_FALSE(std::filesystem::exists(folder));
}

}  // namespace
}  // namespace DesktopTest
