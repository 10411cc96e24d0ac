#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>
#include <unistd.h>

#include "OrvelCore/Brand.h"
#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/LoginItem.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

namespace {

namespace Brand = OrvelCore::Brand;

class ServiceErrors final : public std::error_category {
  public:
    const char* name() const noexcept override { return "SMAppService"; }
    std::string message(int code) const override {
        return "the service could not be changed (" + std::to_string(code) + ")";
    }
};

std::error_code errorCode(BOOL succeeded, NSError* error) {
    static const ServiceErrors category;
    if (succeeded) return {};
    // A failure without a code must not look like a success.
    const int code = error ? static_cast<int>(error.code) : -1;
    return {code == 0 ? -1 : code, category};
}

SMAppService* guard() {
    NSString* const name = [Cocoa::string(Brand::guardLabel) stringByAppendingString:@".plist"];
    return [SMAppService agentServiceWithPlistName:name];
}

/// Runs launchd's tool and waits for its end. Its exit status is ignored.
void runLaunchctl(const std::vector<std::string>& arguments) {
    @autoreleasepool {
        NSMutableArray* const list = [NSMutableArray array];
        for (const auto& argument : arguments) [list addObject:Cocoa::string(argument)];
        NSTask* const task = [[NSTask alloc] init];
        task.executableURL = [NSURL fileURLWithPath:@"/bin/launchctl"];
        task.arguments = list;
        task.standardOutput = NSFileHandle.fileHandleWithNullDevice;
        task.standardError = NSFileHandle.fileHandleWithNullDevice;
        NSError* error = nil;
        if (![task launchAndReturnError:&error]) {
            NSLog(@"%@: could not start the crash guard: %@", Cocoa::string(Brand::name), error);
            return;
        }
        [task waitUntilExit];
    }
}

}  // namespace

std::filesystem::path GuardService::executable() {
    @autoreleasepool {
        const char* const bundle = NSBundle.mainBundle.bundlePath.fileSystemRepresentation;
        return std::filesystem::path(bundle ? bundle : "/") / "Contents/MacOS" /
               Brand::guardExecutable;
    }
}

bool GuardService::isEnabled() {
    @autoreleasepool {
        return guard().status == SMAppServiceStatusEnabled;
    }
}

// On threads without a pool of their own.
std::error_code GuardService::registerService() {
    @autoreleasepool {
        NSError* error = nil;
        const BOOL succeeded = [guard() registerAndReturnError:&error];
        return errorCode(succeeded, error);
    }
}

void GuardService::unregisterService() {
    @autoreleasepool {
        [guard() unregisterAndReturnError:nil];
    }
}

void GuardService::kickstart() {
    runLaunchctl(kickstartArguments(getuid()));
}

void GuardService::renew() {
    auto arguments = kickstartArguments(getuid());
    // `-k` first ends a running guard.
    arguments.insert(arguments.begin() + 1, "-k");
    runLaunchctl(arguments);
}

bool LoginItem::isEnabled() {
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

std::error_code LoginItem::registerItem() {
    NSError* error = nil;
    const BOOL succeeded = [SMAppService.mainAppService registerAndReturnError:&error];
    return errorCode(succeeded, error);
}

std::error_code LoginItem::unregisterItem() {
    NSError* error = nil;
    const BOOL succeeded = [SMAppService.mainAppService unregisterAndReturnError:&error];
    return errorCode(succeeded, error);
}

}  // namespace OrvelSystem
