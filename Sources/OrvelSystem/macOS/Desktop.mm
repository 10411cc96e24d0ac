#import <AppKit/AppKit.h>
#import <IOKit/pwr_mgt/IOPMLib.h>

#include "OrvelCore/HotCorner.h"
#include "OrvelCore/SettingsStore.h"
#include "OrvelSystem/DesktopCorners.h"
#include "OrvelSystem/DesktopSettings.h"
#include "OrvelSystem/DisplayAwake.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

std::set<OrvelCore::TriggerSettings::Corner> DesktopCorners::used() {
    @autoreleasepool {
        OrvelCore::InMemorySettingsStore dock;
        for (const auto& [key, value] : Cocoa::dictionary(
                 [NSUserDefaults.standardUserDefaults persistentDomainForName:@"com.apple.dock"]))
            if (const auto* const number = value.get<std::int64_t>()) dock.setInteger(key, *number);
        return OrvelCore::HotCorner::cornersMacOSUses(dock);
    }
}

void DesktopSettings::openURL(const std::string& url) {
    if (NSURL* const parsed = [NSURL URLWithString:Cocoa::string(url)])
        [NSWorkspace.sharedWorkspace openURL:parsed];
}

void DesktopSettings::openNotificationSettings() {
    openURL("x-apple.systempreferences:com.apple.Notifications-Settings.extension");
}

namespace {

class PowerAssertion final : public AwakeAssertion {
  public:
    explicit PowerAssertion(const std::string& reason) {
        isTaken_ = IOPMAssertionCreateWithName(
                       kIOPMAssertionTypePreventUserIdleDisplaySleep, kIOPMAssertionLevelOn,
                       (__bridge CFStringRef)Cocoa::string(reason), &id_) == kIOReturnSuccess;
    }
    PowerAssertion(const PowerAssertion&) = delete;
    PowerAssertion& operator=(const PowerAssertion&) = delete;
    ~PowerAssertion() override {
        if (isTaken_) IOPMAssertionRelease(id_);
    }
    bool isTaken() const override { return isTaken_; }

  private:
    IOPMAssertionID id_ = 0;
    bool isTaken_ = false;
};

}  // namespace

std::unique_ptr<AwakeAssertion> DisplayAwake::takeFromSystem(const std::string& reason) {
    return std::make_unique<PowerAssertion>(reason);
}

OrvelCore::Point PointerState::location() {
    return Cocoa::point(NSEvent.mouseLocation);
}

bool PointerState::buttonDown() {
    return (NSEvent.pressedMouseButtons & 1) != 0;
}

}  // namespace OrvelSystem
