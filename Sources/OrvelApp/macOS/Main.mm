#include <algorithm>
#include <cerrno>
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

/// Whether the session starts the program, and not the user.
bool startsAsLoginItem() {
    NSAppleEventDescriptor* const event = currentEvent();
    return event && event.eventID == openApplication &&
           [event paramDescriptorForKeyword:launchReason].enumCodeValue == loginItem;
}

/// Why the session asks for the end. Any program can send such an event, and a reason lets it end
/// the program during a lock, so only the system's login window is believed.
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

/// One marker says that the screen is locked, so there is one app for each data folder. The kernel
/// releases the file with the process. Without a place for it a process too many runs rather than
/// none.
bool isOnlyInstance() {
    const auto folder = OrvelCore::dataFolder();
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const int file = ::open((folder / "app.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return file < 0 || ::flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

}  // namespace

/// Passes what the application is told on to the portable delegate.
@interface OrvelApplicationDelegate : NSObject <NSApplicationDelegate>
@end

@implementation OrvelApplicationDelegate {
    std::unique_ptr<OrvelApp::LiveSystem> _system;
    std::unique_ptr<OrvelApp::AppDelegate> _delegate;
    /// Those that came before the launch had finished.
    std::vector<std::string> _urls;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    _system = std::make_unique<OrvelApp::LiveSystem>(startsAsLoginItem());
    _delegate = std::make_unique<OrvelApp::AppDelegate>(_system->appSystem());
    _delegate->applicationDidFinishLaunching();
    if (!_urls.empty()) _delegate->open(_urls);
    _urls.clear();
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
    // A core file would hold what is being typed.
    constexpr rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    @autoreleasepool {
        if (!isOnlyInstance()) return 0;
        NSApplication* const application = NSApplication.sharedApplication;
        // The application does not keep its delegate.
        static OrvelApplicationDelegate* const delegate = [[OrvelApplicationDelegate alloc] init];
        application.delegate = delegate;
        [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
        application.mainMenu = OrvelModes::CocoaMenu::mainMenu();
        [application run];
    }
    return 0;
}
