#include "OrvelCore/LaunchPolicy.h"
#include "OrvelCore/QuitPolicy.h"

#include "Support/Prelude.h"

using namespace OrvelCore;

TEST(LaunchPolicy, OpensTheRightScreen) {
    using enum LaunchScreen;
    const std::map<std::string, std::string, std::less<>> plain;
    const std::map<std::string, std::string, std::less<>> quiet = {{"ORVEL_NO_ONBOARDING", ""}};
    const bool shown = true, hidden = false, login = true, byHand = false;
    EXPECT_EQ(LaunchPolicy::screen(shown, byHand, true, false, plain), nothing);
    EXPECT_EQ(LaunchPolicy::screen(shown, byHand, false, false, plain), onboarding);
    EXPECT_EQ(LaunchPolicy::screen(shown, login, false, false, plain), onboarding);
    for (const bool done : {true, false}) {
        const auto& environment = done ? plain : quiet;
        EXPECT_EQ(LaunchPolicy::screen(hidden, byHand, false, done, environment), settings);
        EXPECT_EQ(LaunchPolicy::screen(hidden, login, false, done, environment), nothing);
        EXPECT_EQ(LaunchPolicy::screen(shown, byHand, false, done, environment), nothing);
        EXPECT_EQ(LaunchPolicy::screen(hidden, byHand, true, done, environment), nothing);
    }
    EXPECT_FALSE(LaunchPolicy::showsSettings(hidden, byHand, true));
    EXPECT_EQ(LaunchPolicy::reopenScreen(true), onboarding);
    EXPECT_EQ(LaunchPolicy::reopenScreen(false), settings);
}

TEST(LaunchPolicy, ShowsSettingsForAnEvictedIcon) {
    EXPECT_TRUE(LaunchPolicy::showsSettingsWhenEvicted(false, false, false));
    EXPECT_FALSE(LaunchPolicy::showsSettingsWhenEvicted(std::nullopt, false, false));
    EXPECT_FALSE(LaunchPolicy::showsSettingsWhenEvicted(true, false, false));
    EXPECT_FALSE(LaunchPolicy::showsSettingsWhenEvicted(false, true, false));
    EXPECT_FALSE(LaunchPolicy::showsSettingsWhenEvicted(false, false, true));
}

TEST(QuitPolicy, HoldsUpTheUserAndNobodyElse) {
    using enum QuitPolicy::Reason;
    EXPECT_TRUE(QuitPolicy::mayQuit(0, false, user));
    EXPECT_FALSE(QuitPolicy::mayQuit(1, false, user));
    EXPECT_FALSE(QuitPolicy::mayQuit(0, true, user));
    for (const auto reason : {logOut, restart, shutDown})
        EXPECT_TRUE(QuitPolicy::mayQuit(2, true, reason));
}
