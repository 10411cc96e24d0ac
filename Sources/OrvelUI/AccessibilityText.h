#pragma once

#include <string>
#include <vector>

/// What each control does, in one sentence, for users of a screen reader.
namespace OrvelUI::AccessibilityText {

inline constexpr auto lockMac = "Locks your Mac now.";
inline constexpr auto lockFrontApp = "Locks this app until you unlock it.";
inline constexpr auto unlockApp = "Asks for Touch ID or your Mac password to unlock this app.";
inline constexpr auto quickBlur = "Blurs every display until you press Escape.";
inline constexpr auto focusBlur = "Blurs everything but the window you're using.";
inline constexpr auto privateApps = "Blurs the apps you chose whenever you're not using them.";
inline constexpr auto privateApp = "Adds or removes this app from your private apps.";
inline constexpr auto openSettings = "Opens Settings.";
std::string quit();
std::string installUpdate();
inline constexpr auto previewLock = "Shows the lock for 5 seconds. You don't need to unlock it.";
inline constexpr auto record = "Press the keys you want to use, or Escape to cancel.";
inline constexpr auto clearShortcut = "Removes this shortcut.";
inline constexpr auto hotCorner = "Picks this corner. Pick it again to turn it off.";
inline constexpr auto touchID = "Touch the sensor to unlock.";
inline constexpr auto passwordField = "Type your Mac password, then press Return.";
inline constexpr auto tryIt = "Locks your Mac now. Unlock to come back here.";
inline constexpr auto onboardingNext = "Goes to the next step.";
inline constexpr auto onboardingSkip = "Skips this step.";
inline constexpr auto chooseApp = "Blurs this app whenever you're not using it.";

/// Every sentence above, preceded by the label of the one switch that needs no sentence.
std::vector<std::string> all();

}  // namespace OrvelUI::AccessibilityText
