#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvelCore/Shortcut.h"

/// The texts of the onboarding.
namespace OrvelCore::OnboardingText {

inline constexpr auto welcomeTitle = "Your screen, for your eyes only.";
inline constexpr auto welcomeBody =
    "Lock your Mac or blur your screen with one shortcut, and come back with Touch ID or your Mac "
    "password.";
inline constexpr auto shortcutsTitle = "Two shortcuts to remember";
inline constexpr auto lockMacTitle = "Lock your Mac";
inline constexpr auto lockAppTitle = "Lock the app in front";
inline constexpr auto changeNote = "You can change both in Settings.";
inline constexpr auto tryWaiting = "Unlock with Touch ID or your Mac password to come back here.";
inline constexpr auto tryDone = "That's it. You're protected.";
inline constexpr auto privateTitle = "Keep your chats private";
std::string privateBody();
inline constexpr auto privateNone =
    "None of the usual chat and mail apps are on this Mac. You can add any app later in Settings.";
inline constexpr auto finishTitle = "You're all set";
std::string launchAtLogin();
std::string menuBarNote();
std::string hiddenIconNote();
/// Shown after the keycaps of the shortcut.
inline constexpr auto hiddenIconShortcut = "still locks your Mac";

/// Explains which browser shortcut the default shortcut replaces; `nullopt` for any other shortcut,
/// or none.
std::optional<std::string> browserNote(const std::optional<Shortcut>& lockMac);

/// Every text above; the browser note comes last.
std::vector<std::string> all();

}  // namespace OrvelCore::OnboardingText
