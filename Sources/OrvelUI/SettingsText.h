#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "OrvelCore/Capabilities.h"
#include "OrvelCore/Preferences.h"
#include "OrvelCore/TriggerSettings.h"

/// Texts of the Settings window that several places use.
namespace OrvelUI::SettingsText {

/// One of several values to choose from.
template <class T>
struct Choice {
    T value;
    std::string_view title;
};
/// In seconds; `nullopt` for never.
using DurationChoice = Choice<std::optional<double>>;

std::span<const DurationChoice> idleBlurChoices();
std::span<const DurationChoice> idleLockChoices();
std::span<const DurationChoice> handOffChoices();

std::string_view tintTitle(OrvelCore::OverlayTint tint);
std::string_view styleTitle(OrvelCore::LockStyle style);
std::string_view styleDetail(OrvelCore::LockStyle style);
std::string_view cornerTitle(OrvelCore::TriggerSettings::Corner corner);
std::string_view cornerActionTitle(OrvelCore::TriggerSettings::CornerAction action);

inline constexpr auto cornerWarning =
    "macOS already uses this corner, so both will act. Pick another, or change it in System "
    "Settings, Desktop and Dock, Hot Corners.";
inline constexpr auto notificationTip =
    "Notification banners from private apps are not blurred. Turn off their previews to keep them "
    "private.";
std::string hiddenIconNote();

/// For what the session does not let this program do, in its place.
inline constexpr auto noCovers =
    "Your desktop does not tell programs where the windows of others are, so single apps can be "
    "neither private nor locked.";
/// For a session whose locked and private apps are hidden.
inline constexpr auto hidesApps =
    "Your desktop lets no program cover single windows, so those of locked and private apps go to "
    "sway's scratchpad. Take one out to use the app, or to unlock it.";
std::string noShortcuts();
/// For an account that asks for more than its password.
std::string noPasswordField();
std::string noBlur(const OrvelCore::Capabilities& offered);

}  // namespace OrvelUI::SettingsText
