#include "OrvelSystem/macOS/Appearance.h"

#include <utility>
#include <vector>

#import <AppKit/AppKit.h>

#include "OrvelSystem/macOS/Notifications.h"

/// Observes the application's appearance by key-value observing, since there is no notification for
/// it.
@interface OrvelAppearanceObserver : NSObject
@property(nonatomic) std::function<void()> changed;
@end

@implementation OrvelAppearanceObserver
- (instancetype)init {
    if ((self = [super init]))
        [NSApp addObserver:self
                forKeyPath:@"effectiveAppearance"
                   options:NSKeyValueObservingOptionNew
                   context:nullptr];
    return self;
}
- (void)dealloc {
    [NSApp removeObserver:self forKeyPath:@"effectiveAppearance"];
}
- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
    if (self.changed) self.changed();
}
@end

namespace OrvelSystem::Appearance {

bool isDark() {
    NSAppearanceName const best = [NSApp.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    return [best isEqualToString:NSAppearanceNameDarkAqua];
}

bool increasesContrast() {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldIncreaseContrast;
}

bool reducesMotion() {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

bool reducesTransparency() {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceTransparency;
}

OrvelCore::Subscription observe(std::function<void()> changed) {
    struct Watch {
        OrvelAppearanceObserver* appearance;
        OrvelCore::Subscription accessibility;
    };
    OrvelAppearanceObserver* const appearance = [[OrvelAppearanceObserver alloc] init];
    appearance.changed = changed;
    return std::make_shared<Watch>(Watch{
        appearance, observeNotification(NSWorkspace.sharedWorkspace.notificationCenter,
                                        NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification,
                                        [changed](NSNotification*) { changed(); })});
}

}  // namespace OrvelSystem::Appearance
