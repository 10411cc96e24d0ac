#import <AppKit/AppKit.h>

#include "OrvelSystem/Announcer.h"
#include "OrvelSystem/Haptics.h"
#include "OrvelSystem/InterfaceSounds.h"
#include "OrvelSystem/ScreenReader.h"
#include "OrvelSystem/SoundPlayer.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

namespace {

class CocoaSound final : public PlayableSound {
  public:
    explicit CocoaSound(NSSound* sound) : sound_(sound) {}
    void stop() override { [sound_ stop]; }
    void play() override { [sound_ play]; }

  private:
    NSSound* sound_;
};

}  // namespace

SoundPlayer::Make SoundPlayer::systemSounds() {
    return [](OrvelCore::LockSound,
              const std::vector<std::uint8_t>& wav) -> std::unique_ptr<PlayableSound> {
        NSData* const data = [NSData dataWithBytes:wav.data() length:wav.size()];
        NSSound* const sound = [[NSSound alloc] initWithData:data];
        return sound ? std::make_unique<CocoaSound>(sound) : nullptr;
    };
}

bool InterfaceSounds::enabled() {
    @autoreleasepool {
        NSDictionary* const domain =
            [NSUserDefaults.standardUserDefaults persistentDomainForName:NSGlobalDomain];
        if (!domain) return enabled(std::nullopt);
        return enabled(std::optional(Cocoa::dictionary(domain)));
    }
}

void Haptics::perform(OrvelCore::Haptic haptic) {
    const auto pattern = haptic == OrvelCore::Haptic::failure ? NSHapticFeedbackPatternGeneric
                                                              : NSHapticFeedbackPatternLevelChange;
    [NSHapticFeedbackManager.defaultPerformer
        performFeedbackPattern:pattern
               performanceTime:NSHapticFeedbackPerformanceTimeNow];
}

void Announcer::announce(const std::string& text) {
    NSDictionary* const info = @{
        NSAccessibilityAnnouncementKey : Cocoa::string(text),
        NSAccessibilityPriorityKey : @(NSAccessibilityPriorityHigh)
    };
    NSAccessibilityPostNotificationWithUserInfo(
        NSApp, NSAccessibilityAnnouncementRequestedNotification, info);
}

bool ScreenReader::isOn() {
    return NSWorkspace.sharedWorkspace.isVoiceOverEnabled;
}

}  // namespace OrvelSystem
