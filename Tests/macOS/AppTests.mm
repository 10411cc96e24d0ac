// The whole program, as macOS starts it.

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#import <OpenDirectory/OpenDirectory.h>
#include <gmock/gmock.h>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelCore/LockMarker.h"
#include "OrvelCore/OnboardingFlow.h"
#include "OrvelSystem/AccountIdentity.h"
#include "OrvelSystem/HotkeyCenter.h"
#include "OrvelSystem/macOS/UserDefaultsStore.h"

#include "Support/Scripted.h"

/// In Main.mm.
@interface OrvelApplicationDelegate : NSObject <NSApplicationDelegate>
@end

namespace OrvelApp {
namespace {

/// The panels of the lock that are on the screen.
std::vector<NSWindow*> covers() {
    std::vector<NSWindow*> found;
    for (NSWindow* window in NSApp.windows)
        if (window.isVisible && window.level == OrvelBlur::WindowLevel::lock)
            found.push_back(window);
    return found;
}

/// The field that takes the password; nil if there is none.
NSSecureTextField* fieldIn(NSView* view) {
    if ([view isKindOfClass:[NSSecureTextField class]])
        return static_cast<NSSecureTextField*>(view);
    for (NSView* part in view.subviews)
        if (NSSecureTextField* const found = fieldIn(part)) return found;
    return nil;
}

bool canType() {
    return std::ranges::any_of(covers(), [](NSWindow* window) {
        NSView* const field = fieldIn(window.contentView);
        return field && !field.hidden && field.frame.size.width > 50;
    });
}

/// As the user does, into the window with the keyboard.
void enter(NSString* password) {
    for (NSWindow* window : covers()) {
        if (!window.isKeyWindow) continue;
        // As a click does. GNUstep ends the typing when the field is emptied.
        [window makeFirstResponder:fieldIn(window.contentView)];
        auto* const editor = static_cast<NSTextView*>(window.firstResponder);
        ASSERT_TRUE([editor isKindOfClass:[NSTextView class]]);
        [editor insertText:password];
        [editor doCommandBySelector:@selector(insertNewline:)];
        return;
    }
    FAIL() << "no cover has the keyboard";
}

class AppTest : public testing::Test {
  protected:
    AppTest() {
        for (NSScreen* screen in NSScreen.screens) Scripted::displays.push_back(screen.frame);
        Scripted::session = @{};
        Scripted::bootSession = "boot";
        Scripted::sensor = {.isUntouched = true};
        Scripted::nodes[static_cast<int>(kODNodeTypeAuthentication)] = {
            .accounts = {{.name = OrvelSystem::AccountIdentity::userName(),
                          .password = "right",
                          .refusal = [NSError errorWithDomain:@"com.apple.OpenDirectory"
                                                         code:kODErrorCredentialsInvalid
                                                     userInfo:nil]}}};
        OrvelSystem::UserDefaultsStore store;
        OrvelCore::OnboardingRecord::markDone(store);
        delegate_ = [[OrvelApplicationDelegate alloc] init];
        [delegate_ applicationDidFinishLaunching:[NSNotification notificationWithName:@"launch"
                                                                               object:nil]];
    }
    static void lock() {
        const auto shortcut = OrvelCore::Shortcut::lockMac();
        Scripted::press(
            {shortcut.keyCode, OrvelSystem::HotkeyCenter::carbonModifiers(shortcut.modifiers)});
        Scripted::runUntil(canType);
    }
    static void expectCovered() {
        EXPECT_EQ(covers().size(), NSScreen.screens.count);
        for (NSScreen* screen in NSScreen.screens)
            EXPECT_TRUE(std::ranges::any_of(covers(), [&](NSWindow* window) {
                return NSEqualRects(window.frame, screen.frame);
            }));
        EXPECT_TRUE(OrvelCore::LockMarkerStore::standard().read().has_value());
    }
    bool mayQuit() { return [delegate_ applicationShouldTerminate:NSApp] == NSTerminateNow; }

    id<NSApplicationDelegate> delegate_;
};

TEST_F(AppTest, OnlyThePasswordOrTheFingerOpensALock) {
    EXPECT_TRUE(mayQuit());
    Scripted::checks = 0;
    lock();
    expectCovered();
    EXPECT_FALSE(mayQuit());

    // The card ignores what is typed before it has the keyboard.
    Scripted::runUntil([] {
        if (Scripted::checks == 0) enter(@"wrong");
        return Scripted::checks > 0 && canType();
    });
    expectCovered();
    [NSDistributedNotificationCenter.defaultCenter
        postNotificationName:@"com.apple.screenIsUnlocked"
                      object:nil];
    [delegate_ application:NSApp openURLs:@[ [NSURL URLWithString:@"karvo://unlock"] ]];
    [delegate_ applicationShouldHandleReopen:NSApp hasVisibleWindows:NO];
    int turns = 0;
    Scripted::runUntil([&] { return ++turns > 20; });
    expectCovered();

    enter(@"right");
    Scripted::runUntil([] { return covers().empty(); });
    EXPECT_FALSE(OrvelCore::LockMarkerStore::standard().read().has_value());
    EXPECT_TRUE(mayQuit());

    Scripted::sensor = {.success = true};
    const auto shortcut = OrvelCore::Shortcut::lockMac();
    Scripted::press(
        {shortcut.keyCode, OrvelSystem::HotkeyCenter::carbonModifiers(shortcut.modifiers)});
    Scripted::runUntil([] { return !covers().empty(); });
    Scripted::runUntil([] { return covers().empty(); });
}

}  // namespace
}  // namespace OrvelApp
