#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelApp/macOS/LiveSystem.h"
#include "OrvelCore/AppFolders.h"
#include "OrvelModes/macOS/CocoaMenu.h"
#include "OrvelSystem/ProcessList.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace {

constexpr FourCharCode openApplication = 0x6F617070;  // 'oapp'
constexpr FourCharCode launchReason = 0x70726474;     // 'prdt'
constexpr FourCharCode loginItem = 0x6C676974;        // 'lgit'
constexpr FourCharCode quitReason = 0x7768793F;       // 'why?'
constexpr FourCharCode senderProcess = 0x73706964;    // 'spid'

NSAppleEventDescriptor* currentEvent() {
    return NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
}

/// Whether the session, rather than the user, starts the program.
bool startsAsLoginItem() {
    NSAppleEventDescriptor* const event = currentEvent();
    return event && event.eventID == openApplication &&
           [event paramDescriptorForKeyword:launchReason].enumCodeValue == loginItem;
}

/// Why the session asks the program to quit. Any program can send such an event, and a reason
/// allows the program to quit during a lock, so only the system's login window is trusted.
std::optional<std::uint32_t> quitCode() {
    NSAppleEventDescriptor* const event = currentEvent();
    NSAppleEventDescriptor* const reason = [event attributeDescriptorForKeyword:quitReason];
    NSAppleEventDescriptor* const sender = [event attributeDescriptorForKeyword:senderProcess];
    if (!reason || !sender) return std::nullopt;
    const auto trusted = OrvelSystem::ProcessList::running(
        "/System/Library/CoreServices/loginwindow.app/Contents/MacOS/loginwindow");
    if (std::ranges::find(trusted, sender.int32Value) == trusted.end()) return std::nullopt;
    return reason.enumCodeValue;
}

/// There is one marker for a locked screen, so there must be one app for each data folder. The
/// kernel releases the file lock when the process ends. If the file cannot be opened, a second
/// instance is better than none.
bool isOnlyInstance() {
    const auto folder = OrvelCore::dataFolder();
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const int file = ::open((folder / "app.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return file < 0 || ::flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

}  // namespace

/// Passes the application's events to the portable delegate.
@interface OrvelApplicationDelegate : NSObject <NSApplicationDelegate>
@end

@implementation OrvelApplicationDelegate {
    std::unique_ptr<OrvelApp::LiveSystem> _system;
    std::unique_ptr<OrvelApp::AppDelegate> _delegate;
    /// URLs that arrived before the launch had finished.
    std::vector<std::string> _urls;
    dispatch_source_t _replaced;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    _system = std::make_unique<OrvelApp::LiveSystem>(startsAsLoginItem());
    _delegate = std::make_unique<OrvelApp::AppDelegate>(_system->appSystem());
    _delegate->applicationDidFinishLaunching();
    if (!_urls.empty()) _delegate->open(_urls);
    _urls.clear();
    [self watchForReplacement];
}

/// The package sends SIGURG after it has replaced the bundle, because that signal does not end a
/// process that does not handle it.
- (void)watchForReplacement {
    _replaced =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, SIGURG, 0, dispatch_get_main_queue());
    if (!_replaced) return;
    OrvelApp::AppDelegate* const delegate = _delegate.get();
    dispatch_source_set_event_handler(_replaced, ^{
      delegate->programFileChanged();
    });
    dispatch_resume(_replaced);
}

- (void)application:(NSApplication*)application openURLs:(NSArray*)urls {
    std::vector<std::string> opened;
    for (NSURL* url in urls) opened.push_back(OrvelSystem::Cocoa::string(url.absoluteString));
    if (_delegate)
        _delegate->open(opened);
    else
        _urls.insert(_urls.end(), opened.begin(), opened.end());
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)application
                    hasVisibleWindows:(BOOL)hasVisibleWindows {
    if (_delegate) _delegate->reopen();
    return NO;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application {
    const bool mayQuit = !_delegate || _delegate->applicationShouldTerminate(quitCode());
    return mayQuit ? NSTerminateNow : NSTerminateCancel;
}

@end

int main() {
    // A core file would contain what is being typed.
    constexpr rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    @autoreleasepool {
        if (!isOnlyInstance()) return 0;
        NSApplication* const application = NSApplication.sharedApplication;
        // The application does not retain its delegate.
        static OrvelApplicationDelegate* const delegate = [[OrvelApplicationDelegate alloc] init];
        application.delegate = delegate;
        [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
        application.mainMenu = OrvelModes::CocoaMenu::mainMenu();
        [application run];
    }
    return 0;
}
