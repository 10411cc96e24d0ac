#include "OrvelApp/macOS/LiveSystem.h"

#include <chrono>
#include <thread>
#include <utility>

#import <AppKit/AppKit.h>
#include <fmt/format.h>
#include <unistd.h>

#include "OrvelAuth/AccountLockoutPolicy.h"
#include "OrvelAuth/Biometrics.h"
#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/Brand.h"
#include "OrvelSystem/AccountIdentity.h"
#include "OrvelSystem/BootSession.h"
#include "OrvelSystem/CurrentThread.h"
#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/MacOSLock.h"
#include "OrvelSystem/ProcessList.h"
#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelApp {

using namespace OrvelSystem;
using OrvelAuth::AccountLockoutPolicy;
namespace Brand = OrvelCore::Brand;

namespace {

void log(std::string_view line) {
    NSLog(@"%@", Cocoa::string(line));
}

void startGuard(bool renews) {
    CurrentThread::describe("guard-service", CurrentThread::Urgency::inBackground);
    if (const auto error = GuardService::start(renews))
        log(fmt::format("{}: could not register the crash guard: {}", Brand::name,
                        error.message()));
}

/// Quits, and has a shell start the bundle that is then in place and open the URLs with it.
void restart(const std::vector<std::string>& urls) {
    NSString* const script = @"while kill -0 \"$1\" 2>/dev/null; do sleep 0.1; done; shift; exec "
                             @"/usr/bin/open -a \"$@\"";
    NSString* const pid = [NSString stringWithFormat:@"%d", getpid()];
    NSMutableArray* const arguments = [NSMutableArray
        arrayWithObjects:@"-c", script, @"sh", pid, NSBundle.mainBundle.bundlePath, nil];
    for (const auto& url : urls) [arguments addObject:Cocoa::string(url)];
    NSTask* const task = [[NSTask alloc] init];
    task.executableURL = [NSURL fileURLWithPath:@"/bin/sh"];
    task.arguments = arguments;
    if ([task launchAndReturnError:nil]) [NSApp terminate:nil];
}

std::map<std::string, std::string, std::less<>> environment() {
    std::map<std::string, std::string, std::less<>> values;
    NSDictionary* const found = NSProcessInfo.processInfo.environment;
    for (NSString* name in found)
        values.emplace(Cocoa::string(name), Cocoa::string(static_cast<NSString*>(found[name])));
    return values;
}

OrvelCore::OSVersion osVersion() {
    const auto version = NSProcessInfo.processInfo.operatingSystemVersion;
    return {.major = static_cast<int>(version.majorVersion),
            .minor = static_cast<int>(version.minorVersion)};
}

}  // namespace

LiveSystem::LiveSystem(bool asLoginItem)
    : asLoginItem_(asLoginItem),
      userName_(AccountIdentity::userName()),
      markers_(OrvelCore::LockMarkerStore::standard()),
      verifier_(userName_, OrvelAuth::passwordTimeout, loop_),
      displayAwake_(fmt::format("{} keeps displays awake while locked", Brand::name)) {}

AppSystem LiveSystem::appSystem() {
    AppSystem system{.loop = loop_,
                     .defaults = defaults_,
                     .markers = markers_,
                     .attemptFile = OrvelCore::AttemptLog::standardFile(),
                     .verifier = verifier_,
                     .hotkeys = hotkeys_,
                     .displayAwake = displayAwake_,
                     .wallClock = [] { return OrvelCore::Date(std::chrono::system_clock::now()); },
                     .kiosk = OrvelLock::KioskSystem::live(loop_),
                     .covers = coverSystem(),
                     .modes = modeSystem(),
                     .menu = menuSystem(),
                     .windows = windowSystem(),
                     .updates = OrvelUpdates::UpdateSystem::live(loop_)};
    system.fullName = AccountIdentity::fullName();
    system.picture = AccountIdentity::picture();
    system.bootSession = BootSession::current();
    system.accountLimit = [this] { return AccountLockoutPolicy::currentLimit(userName_); };
    system.accountFailures = [this] { return AccountLockoutPolicy::currentFailures(userName_); };
    system.passwordSuffices = [] { return true; };
    system.observeAuthentication = [](AuthenticationHandlers handlers) {
        OrvelAuth::Biometrics::observeLockout(std::move(handlers.fingersLockedOut));
    };
    system.biometricsAvailable = OrvelAuth::Biometrics::isAvailable;
    system.blurSupport = OrvelBlur::BlurSupport::current();
    system.lockPresenter = [this](OrvelBlur::BlurBackend backend) {
        return OrvelLock::LockPresenterSystem::live(loop_, backend);
    };
    system.darkAppearance = [] { return Appearance::isDark(); };
    system.reduceTransparency = [] { return Appearance::reducesTransparency(); };
    system.engageMacOSLock = [] { MacOSLock::engage(); };
    system.sessionLockerIsKnown = [] { return true; };
    system.sessionLockerIsAvailable = system.sessionLockerIsKnown;
    system.screenIsLocked = MacOSLock::isScreenLocked;
    system.observeSession = [this](SessionHandlers handlers) {
        events_.onMacOSLocked = std::move(handlers.macOSLocked);
        events_.onMacOSUnlocked = std::move(handlers.macOSUnlocked);
        events_.onMacOSLockUnknown = std::move(handlers.macOSLockUnknown);
        events_.onWake = std::move(handlers.wake);
        events_.onScreensChanged = std::move(handlers.screensChanged);
    };
    system.guardAvailable = [guard = GuardService::executable()] {
        return GuardService::isEnabled() && ProcessList::isRunning(guard);
    };
    system.startGuard = [](bool renews) { std::thread(startGuard, renews).detach(); };
    system.programFile = [] { return ProgramFile::own().state; };
    system.restart = restart;
    system.osVersion = osVersion();
    system.reservedShortcuts = OrvelCore::ShortcutRules::reservedOnMacOS();
    system.environment = environment();
    system.asLoginItem = asLoginItem_;
    system.activateApp = [] { [NSApp activate]; };
    system.log = log;
    return system;
}

}  // namespace OrvelApp
