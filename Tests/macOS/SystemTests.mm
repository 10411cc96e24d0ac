#include <thread>
#include <vector>

#import <Foundation/Foundation.h>
#include <gmock/gmock.h>

#include "OrvelSystem/StatusItemVisibility.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/DispatchMainLoop.h"
#include "OrvelSystem/macOS/UserDefaultsStore.h"

#include "Support/Scripted.h"

namespace OrvelSystem {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(DispatchMainLoop, RunsPostedCallsOnTheMainThreadInOrder) {
    DispatchMainLoop loop;
    const auto main = std::this_thread::get_id();
    std::vector<int> order;
    std::thread([&loop, &order, main] {
        for (int i = 0; i < 3; ++i)
            loop.post([&order, i, main] {
                EXPECT_EQ(std::this_thread::get_id(), main);
                order.push_back(i);
            });
    }).join();
    EXPECT_THAT(order, IsEmpty());
    Scripted::runUntil([&] { return order.size() == 3; });
    EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST(DispatchMainLoop, APosterDiscardsCallsAfterTheLoopHasEnded) {
    bool late = false;
    bool reached = false;
    auto loop = std::make_unique<DispatchMainLoop>();
    const auto post = loop->poster();
    post([&] { late = true; });
    loop.reset();
    post([&] { late = true; });
    DispatchMainLoop next;
    next.post([&] { reached = true; });
    Scripted::runUntil([&] { return reached; });
    EXPECT_FALSE(late);
}

TEST(DispatchMainLoop, ATimerThatHasEndedDoesNotRun) {
    DispatchMainLoop loop;
    int ticks = 0;
    bool ended = false;
    Timer cancelled = loop.after(0.001, [&] { ended = true; });
    cancelled.cancel();
    {
        const Timer destroyed = loop.every(0.001, [&] { ended = true; });
    }
    Timer repeating;
    repeating = loop.every(0.001, [&] {
        if (++ticks == 3) repeating.cancel();
    });
    Scripted::runUntil([&] { return ticks == 3; });
    bool done = false;
    const Timer later = loop.after(0.02, [&] { done = true; });
    Scripted::runUntil([&] { return done; });
    EXPECT_EQ(ticks, 3);
    EXPECT_FALSE(ended);
}

class UserDefaultsStoreTest : public testing::Test {
  protected:
    UserDefaultsStore store_;
    void SetUp() override { store_.removeAll(); }
    static void set(id value) {
        // GNUstep keeps the old value if the new one is equal, and a boolean may equal a number.
        [NSUserDefaults.standardUserDefaults removeObjectForKey:@"key"];
        [NSUserDefaults.standardUserDefaults setObject:value forKey:@"key"];
    }
};

TEST_F(UserDefaultsStoreTest, KeepsTheTypeOfEachValue) {
    const std::vector<std::string> list{"a", "ü", ""};
    store_.setString("text", "„ü“");
    store_.setBool("flag", false);
    store_.setInteger("whole", -7);
    store_.setDouble("real", 2.5);
    store_.setStringArray("list", list);
    EXPECT_THAT(store_.stringForKey("text"), Optional(std::string("„ü“")));
    EXPECT_THAT(store_.boolForKey("flag"), Optional(false));
    EXPECT_THAT(store_.integerForKey("whole"), Optional(-7));
    EXPECT_THAT(store_.doubleForKey("real"), Optional(2.5));
    EXPECT_THAT(store_.stringArrayForKey("list"), Optional(list));
    store_.remove("flag");
    EXPECT_FALSE(store_.has("flag"));
    EXPECT_TRUE(store_.has("text"));
}

TEST_F(UserDefaultsStoreTest, AValueOfAnotherTypeIsMissing) {
    struct Row {
        id value;
        bool isString, isBool, isInteger, isDouble, isArray;
    };
    const std::vector<Row> rows = {
        {@"1", true, false, false, false, false},
        {@(YES), false, true, false, false, false},
        {@1, false, false, true, true, false},
        {@2.0, false, false, true, true, false},
        {@2.5, false, false, true, true, false},
        {@[ @"a" ], false, false, false, false, true},
        {@[ @"a", @1 ], false, false, false, false, false},
        {@{@"a" : @1}, false, false, false, false, false},
        {[NSDate date], false, false, false, false, false},
    };
    for (const auto& row : rows) {
        set(row.value);
        SCOPED_TRACE([[row.value description] UTF8String]);
        EXPECT_TRUE(store_.has("key"));
        EXPECT_EQ(store_.stringForKey("key").has_value(), row.isString);
        EXPECT_EQ(store_.boolForKey("key").has_value(), row.isBool);
        EXPECT_EQ(store_.integerForKey("key").has_value(), row.isInteger);
        EXPECT_EQ(store_.doubleForKey("key").has_value(), row.isDouble);
        EXPECT_EQ(store_.stringArrayForKey("key").has_value(), row.isArray);
    }
}

TEST(Cocoa, ReadsPropertyLists) {
    const std::byte bytes[] = {std::byte{1}, std::byte{2}};
    const auto found = Cocoa::dictionary(@{
        @"list" : @[ @"a", @(YES), [NSNull null] ],
        @"data" : [NSData dataWithBytes:bytes length:sizeof bytes],
        @"inner" : @{@"n" : @5000000000},
        @7 : @"dropped",
    });
    ASSERT_EQ(found.size(), 3U);
    const auto& list = *found.at("list").get<PropertyValue::Array>();
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(*list[0].get<std::string>(), "a");
    EXPECT_TRUE(*list[1].get<bool>());
    EXPECT_EQ(list[2].get<std::string>(), nullptr);
    EXPECT_THAT(*found.at("data").get<PropertyValue::Data>(), ElementsAre(bytes[0], bytes[1]));
    const auto& inner = *found.at("inner").get<PropertyValue::Dictionary>();
    EXPECT_EQ(*inner.at("n").get<std::int64_t>(), 5000000000);
    EXPECT_THAT(Cocoa::dictionary(@"text"), IsEmpty());
    EXPECT_EQ(Cocoa::string(Cocoa::string("\xFF")), "");
    EXPECT_EQ(Cocoa::string(nil), "");
}

NSDictionary* window(int number, bool isOnScreen) {
    return @{
        @"kCGWindowNumber" : @(number),
        @"kCGWindowOwnerPID" : @77,
        @"kCGWindowLayer" : @0,
        @"kCGWindowIsOnscreen" : @(isOnScreen),
        @"kCGWindowBounds" : @{@"X" : @1, @"Y" : @2.5, @"Width" : @30, @"Height" : @40}
    };
}

TEST(WindowServer, AMalformedEntryDropsOnlyItself) {
    Scripted::windows = @[ window(5, true), @"no window", @{}, window(3, true) ];
    const auto windows = WindowServer::onScreenWindows();
    ASSERT_EQ(windows.size(), 2U);
    EXPECT_EQ(windows[0], (OrvelCore::WindowInfo{5, 77, 0, {1, 2.5, 30, 40}}));
    // Without the function that lists only numbers.
    EXPECT_THAT(WindowServer::onScreenWindowNumbers(), ElementsAre(5, 3));
    Scripted::windows = nil;
    EXPECT_THAT(WindowServer::onScreenWindows(), IsEmpty());
}

TEST(WindowServer, AWindowThatHasLeftTheScreenHasNoBounds) {
    Scripted::windows = @[ window(5, true), window(3, false) ];
    const auto found = WindowServer::bounds({3, 5, 9});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.at(5), (OrvelCore::Rect{1, 2.5, 30, 40}));
    EXPECT_THAT(WindowServer::bounds({}), IsEmpty());
}

TEST(WindowServer, ReadsTheStatusItemsWindowAndTheDisplays) {
    Scripted::windows = @[ window(5, false) ];
    EXPECT_THAT(StatusItemVisibility::isShown(5), Optional(false));
    Scripted::windows = @[];
    EXPECT_EQ(StatusItemVisibility::isShown(5), std::nullopt);
    Scripted::displays = {NSMakeRect(0, 0, 100, 50), NSMakeRect(100, -10, 80, 60)};
    EXPECT_THAT(WindowServer::displayBounds(),
                ElementsAre(OrvelCore::Rect{0, 0, 100, 50}, OrvelCore::Rect{100, -10, 80, 60}));
}

}  // namespace
}  // namespace OrvelSystem
