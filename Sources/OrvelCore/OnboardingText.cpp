#include "OrvelCore/OnboardingText.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelCore::OnboardingText {

std::string privateBody() {
    return fmt::format("{} blurs these apps whenever you're not using them. No permission needed.",
                       Brand::name);
}

std::string launchAtLogin() {
    return fmt::format("Open {} when you log in", Brand::name);
}

std::string menuBarNote() {
    return fmt::format("{} lives in your menu bar. Click its icon for the locks and blurs.",
                       Brand::name);
}

std::string hiddenIconNote() {
    return fmt::format(
        "Your menu bar is full, so macOS hides the {0} icon. Open {0} from Applications to get to "
        "Settings.",
        Brand::name);
}

std::optional<std::string> browserNote(const std::optional<Shortcut>& lockMac) {
    if (lockMac != Shortcut::lockMac()) return std::nullopt;
    return "In your browser, the first one now locks your Mac instead of jumping to the address "
           "bar.";
}

std::vector<std::string> all() {
    return {welcomeTitle,
            welcomeBody,
            shortcutsTitle,
            lockMacTitle,
            lockAppTitle,
            changeNote,
            tryWaiting,
            tryDone,
            privateTitle,
            privateBody(),
            privateNone,
            finishTitle,
            launchAtLogin(),
            menuBarNote(),
            hiddenIconNote(),
            hiddenIconShortcut,
            *browserNote(Shortcut::lockMac())};
}

}  // namespace OrvelCore::OnboardingText
