#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>

#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/MacOSLock.h"
#include "OrvelSystem/SessionEvents.h"

#include "Support/Scripted.h"

namespace OrvelSystem {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

NSDictionary* sessionWith(bool isLocked) {
    return isLocked ? @{@"CGSSessionScreenIsLocked" : @(YES)} : @{};
}

class SessionEventsTest : public testing::Test {
  protected:
    SessionEventsTest() {
        Scripted::session = sessionWith(false);
        begin();
    }
    void begin() {
        events_ = std::make_unique<SessionEvents>();
        events_->onMacOSLocked = [this] { told_.push_back("locked"); };
        events_->onMacOSUnlocked = [this] { told_.push_back("unlocked"); };
        events_->onMacOSLockUnknown = [this] { told_.push_back("unknown"); };
        events_->onWake = [this] { told_.push_back("wake"); };
        events_->onScreensChanged = [this] { told_.push_back("screens"); };
    }
    /// As any program can.
    static void post(NSString* name) {
        [NSDistributedNotificationCenter.defaultCenter postNotificationName:name object:nil];
    }
    std::vector<std::string> told() { return std::exchange(told_, {}); }

    std::unique_ptr<SessionEvents> events_;
    std::vector<std::string> told_;
};

TEST_F(SessionEventsTest, AnUnlockCountsOnlyIfTheWindowServerHasSeenTheLockAndItsEnd) {
    post(@"com.apple.screenIsUnlocked");
    EXPECT_THAT(told(), ElementsAre("unknown"));
    post(@"com.apple.screenIsLocked");
    post(@"com.apple.screenIsUnlocked");
    EXPECT_THAT(told(), ElementsAre("locked", "unknown"));
    Scripted::session = sessionWith(true);
    post(@"com.apple.screenIsLocked");
    post(@"com.apple.screenIsUnlocked");
    EXPECT_THAT(told(), ElementsAre("locked", "unknown"));
    post(@"com.apple.screenIsLocked");
    Scripted::session = sessionWith(false);
    post(@"com.apple.screenIsUnlocked");
    EXPECT_THAT(told(), ElementsAre("locked", "unlocked"));
    post(@"com.apple.screenIsUnlocked");
    EXPECT_THAT(told(), ElementsAre("unknown"));
}

TEST_F(SessionEventsTest, ALockThatWasThereAtTheStartOrIsConfirmedLaterCountsToo) {
    Scripted::session = sessionWith(true);
    begin();
    Scripted::session = sessionWith(false);
    post(@"com.apple.screenIsUnlocked");
    EXPECT_THAT(told(), ElementsAre("unlocked"));
    post(@"com.apple.screenIsLocked");
    Scripted::session = sessionWith(true);
    NSDate* const confirmed = [NSDate dateWithTimeIntervalSinceNow:1];
    // The loop turns between two calls, also if the machine was too slow before.
    int turns = 0;
    Scripted::runUntil([&] { return confirmed.timeIntervalSinceNow < 0 && ++turns > 2; });
    Scripted::session = sessionWith(false);
    post(@"com.apple.screenIsUnlocked");
    EXPECT_THAT(told(), ElementsAre("locked", "unlocked"));
}

TEST_F(SessionEventsTest, NothingIsReportedAfterTheEnd) {
    const auto postAll = [this] {
        post(@"com.apple.screenIsLocked");
        [NSWorkspace.sharedWorkspace.notificationCenter
            postNotificationName:NSWorkspaceDidWakeNotification
                          object:nil];
        [NSNotificationCenter.defaultCenter
            postNotificationName:NSApplicationDidChangeScreenParametersNotification
                          object:nil];
        events_->screensChanged();
    };
    postAll();
    EXPECT_THAT(told(), ElementsAre("locked", "wake", "screens", "screens"));
    events_->stop();
    postAll();
    EXPECT_THAT(told(), IsEmpty());
}

TEST(MacOSLock, OnlyATrueFlagIsALockedScreen) {
    struct Row {
        NSDictionary* session;
        bool isLocked;
    };
    for (const auto& [session, isLocked] :
         std::vector<Row>{{nil, false},
                          {sessionWith(false), false},
                          {sessionWith(true), true},
                          {@{@"CGSSessionScreenIsLocked" : @(NO)}, false},
                          {@{@"CGSSessionScreenIsLocked" : @"YES"}, false}}) {
        Scripted::session = session;
        EXPECT_EQ(MacOSLock::isScreenLocked(), isLocked);
    }
}

TEST(BootSession, IsTheKernelsValue) {
    Scripted::bootSession = std::nullopt;
    EXPECT_EQ(BootSession::current(), "unknown");
    Scripted::bootSession = "6F2D-11";
    EXPECT_EQ(BootSession::current(), "6F2D-11");
}

}  // namespace
}  // namespace OrvelSystem
