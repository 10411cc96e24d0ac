#include "OrvelUI/AccessibilityText.h"

#include "OrvelCore/Brand.h"

namespace OrvelUI::AccessibilityText {

std::string quit() {
    return "Quits " + std::string(OrvelCore::Brand::name) +
           ". Your shortcuts stop working until you open it again.";
}

std::string installUpdate() {
    return "Installs the update and restarts " + std::string(OrvelCore::Brand::name) + ".";
}

std::vector<std::string> all() {
    return {"Check for updates automatically",
            lockMac,
            lockFrontApp,
            unlockApp,
            quickBlur,
            focusBlur,
            privateApps,
            privateApp,
            openSettings,
            quit(),
            installUpdate(),
            previewLock,
            record,
            clearShortcut,
            hotCorner,
            touchID,
            passwordField,
            tryIt,
            onboardingNext,
            onboardingSkip,
            chooseApp};
}

}  // namespace OrvelUI::AccessibilityText
