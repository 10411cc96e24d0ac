#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>
#include <sys/sysctl.h>

#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/MacOSLock.h"
#include "OrvelSystem/ScreenLockProof.h"
#include "OrvelSystem/SessionEvents.h"
#include "OrvelSystem/macOS/Notifications.h"

namespace OrvelSystem {

namespace {

constexpr double lookInterval = 0.5;  // seconds

}  // namespace

/// The observers, and the evidence that the system's own lock was on.
class SessionEvents::Watch {
  public:
    explicit Watch(SessionEvents& events) : events_(events) {
        // The guard locks the screen before it restarts the program.
        if (MacOSLock::isScreenLocked()) proof_.looked(true);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { [looks_ invalidate]; }

    void observe(NSNotificationCenter* center, NSNotificationName name,
                 std::function<void()> tell) {
        tokens_.push_back(observeNotification(center, name, [tell](NSNotification*) { tell(); }));
    }
    void locked() {
        look();
        events_.onMacOSLocked();
    }
    void unlocked() {
        const bool isLocked = MacOSLock::isScreenLocked();
        [looks_ invalidate];
        if (proof_.unlocked(isLocked))
            events_.onMacOSUnlocked();
        else
            events_.onMacOSLockUnknown();
    }

  private:
    /// The window server may confirm the lock only after the notification, so check until it does.
    void look() {
        [looks_ invalidate];
        if (MacOSLock::isScreenLocked()) return proof_.looked(true);
        looks_ = [NSTimer timerWithTimeInterval:lookInterval
                                        repeats:NO
                                          block:^(NSTimer*) {
                                            look();
                                          }];
        [NSRunLoop.mainRunLoop addTimer:looks_ forMode:NSRunLoopCommonModes];
    }

    SessionEvents& events_;
    ScreenLockProof proof_;
    NSTimer* looks_ = nil;
    std::vector<OrvelCore::Subscription> tokens_;
};

SessionEvents::SessionEvents() : watch_(std::make_unique<Watch>(*this)) {
    NSNotificationCenter* const session = NSDistributedNotificationCenter.defaultCenter;
    Watch* const watch = watch_.get();
    watch->observe(session, @"com.apple.screenIsLocked", [watch] { watch->locked(); });
    watch->observe(session, @"com.apple.screenIsUnlocked", [watch] { watch->unlocked(); });
    watch->observe(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidWakeNotification,
                   [this] { onWake(); });
    watch->observe(NSNotificationCenter.defaultCenter,
                   NSApplicationDidChangeScreenParametersNotification,
                   [this] { onScreensChanged(); });
}

SessionEvents::~SessionEvents() = default;

void SessionEvents::screensChanged() {
    if (watch_) onScreensChanged();
}

void SessionEvents::stop() {
    watch_.reset();
}

namespace {

using LockScreen = int (*)();

/// A function of a private framework; null if it is missing. `engage` then uses `engageFallback`.
LockScreen lockScreenImmediate() {
    static const auto found = []() -> LockScreen {
        void* const login = dlopen(
            "/System/Library/PrivateFrameworks/login.framework/Versions/Current/login", RTLD_LAZY);
        return login ? reinterpret_cast<LockScreen>(dlsym(login, "SACLockScreenImmediate"))
                     : nullptr;
    }();
    return found;
}

}  // namespace

bool MacOSLock::isAvailable() {
    return lockScreenImmediate() != nullptr;
}

bool MacOSLock::engage() {
    const auto lock = lockScreenImmediate();
    if (!lock) return engageFallback();
    lock();
    return true;
}

bool MacOSLock::engageFallback() {
    @autoreleasepool {
        NSTask* const task = [[NSTask alloc] init];
        task.executableURL = [NSURL fileURLWithPath:@"/usr/bin/pmset"];
        task.arguments = @[ @"displaysleepnow" ];
        return [task launchAndReturnError:nil];
    }
}

bool MacOSLock::isScreenLocked() {
    @autoreleasepool {
        NSDictionary* const session =
            (__bridge_transfer NSDictionary*)CGSessionCopyCurrentDictionary();
        id locked = session[@"CGSSessionScreenIsLocked"];
        return [locked isKindOfClass:[NSNumber class]] && [locked boolValue];
    }
}

std::string BootSession::current() {
    std::size_t size = 0;
    if (sysctlbyname("kern.bootsessionuuid", nullptr, &size, nullptr, 0) != 0 || size == 0)
        return "unknown";
    std::string value(size, '\0');
    if (sysctlbyname("kern.bootsessionuuid", value.data(), &size, nullptr, 0) != 0 || size == 0)
        return "unknown";
    return value.c_str();
}

}  // namespace OrvelSystem
