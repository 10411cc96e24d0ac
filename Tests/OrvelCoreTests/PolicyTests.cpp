#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvelCore/GuardPolicy.h"
#include "OrvelCore/LaunchPolicy.h"
#include "OrvelCore/QuitPolicy.h"

using namespace OrvelCore;

TEST(GuardPolicy, ActsOnlyOnALockOfThisBoot) {
    using enum GuardAction;
    const std::optional<LockMarker> none;
    const std::optional<LockMarker> live(LockMarker{{}, "boot", 0});
    struct Case {
        std::optional<LockMarker> marker;
        std::string boot;
        std::optional<double> lastRelaunch;
        GuardAction onExit;
        GuardAction onStart;
    };
    for (const auto& c : std::vector<Case>{
             {none, "boot", {}, stay, stay},
             {live, "other", {}, stay, stay},
             {live, "boot", {}, engageMacOSLockAndRelaunch, engageMacOSLockAndRelaunch},
             {live, "boot", 1000 - 599.9, engageMacOSLock, engageMacOSLockAndRelaunch},
             {live, "boot", 1000 - 600.0, engageMacOSLockAndRelaunch, engageMacOSLockAndRelaunch},
         }) {
        EXPECT_EQ(GuardPolicy::onOrvelExit(c.marker, c.boot, c.lastRelaunch, 1000), c.onExit);
        EXPECT_EQ(GuardPolicy::onGuardStart(c.marker, c.boot, false), c.onStart);
        EXPECT_EQ(GuardPolicy::onGuardStart(c.marker, c.boot, true), stay);
    }
}

TEST(GuardResponder, LocksBeforeItRelaunches) {
    const auto callsFor = [](GuardAction action) {
        std::string calls;
        GuardResponder{[&] { calls += "lock "; }, [&] { calls += "relaunch "; }}.perform(action);
        return calls;
    };
    EXPECT_EQ(callsFor(GuardAction::engageMacOSLockAndRelaunch), "lock relaunch ");
    EXPECT_EQ(callsFor(GuardAction::engageMacOSLock), "lock ");
    EXPECT_EQ(callsFor(GuardAction::stay), "");
}

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

TEST(QuitPolicy, ReadsTheSystemsReason) {
    using enum QuitPolicy::Reason;
    EXPECT_EQ(QuitPolicy::reason(std::nullopt), user);
    EXPECT_EQ(QuitPolicy::reason(0x6C6F676F), logOut);    // logo
    EXPECT_EQ(QuitPolicy::reason(0x726C676F), logOut);    // rlgo
    EXPECT_EQ(QuitPolicy::reason(0x72657374), restart);   // rest
    EXPECT_EQ(QuitPolicy::reason(0x72727374), restart);   // rrst
    EXPECT_EQ(QuitPolicy::reason(0x73687574), shutDown);  // shut
    EXPECT_EQ(QuitPolicy::reason(0x7273646E), shutDown);  // rsdn
    EXPECT_EQ(QuitPolicy::reason(0x6F676F6C), user);      // ogol
    EXPECT_EQ(QuitPolicy::reason(0), user);
}
