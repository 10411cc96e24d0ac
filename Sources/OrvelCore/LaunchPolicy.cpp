#include "OrvelCore/LaunchPolicy.h"

namespace OrvelCore {

LaunchScreen LaunchPolicy::screen(
    bool iconShown, bool asLoginItem, bool resumingLock, bool onboardingDone,
    const std::map<std::string, std::string, std::less<>>& environment) {
    if (resumingLock) return LaunchScreen::nothing;
    if (!onboardingDone && !environment.contains("ORVEL_NO_ONBOARDING"))
        return LaunchScreen::onboarding;
    return showsSettings(iconShown, asLoginItem, resumingLock) ? LaunchScreen::settings
                                                               : LaunchScreen::nothing;
}

bool LaunchPolicy::showsSettings(bool iconShown, bool asLoginItem, bool resumingLock) {
    // Without its icon, the app has no other way to appear when the user starts it.
    return !iconShown && !asLoginItem && !resumingLock;
}

LaunchScreen LaunchPolicy::reopenScreen(bool onboardingOpen) {
    return onboardingOpen ? LaunchScreen::onboarding : LaunchScreen::settings;
}

bool LaunchPolicy::showsSettingsWhenEvicted(std::optional<bool> iconShown, bool asLoginItem,
                                            bool locked) {
    return iconShown == false && !asLoginItem && !locked;
}

}  // namespace OrvelCore
