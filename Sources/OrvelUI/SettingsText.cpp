#include "OrvelUI/SettingsText.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelUI::SettingsText {

using OrvelCore::LockStyle;
using OrvelCore::OverlayTint;
using OrvelCore::TriggerSettings;

std::span<const DurationChoice> idleBlurChoices() {
    static constexpr DurationChoice choices[] = {
        {std::nullopt, "Off"}, {30, "30 sec"}, {60, "1 min"}, {120, "2 min"}, {300, "5 min"}};
    return choices;
}

std::span<const DurationChoice> idleLockChoices() {
    static constexpr DurationChoice choices[] = {{std::nullopt, "Off"}, {120, "2 min"},
                                                 {300, "5 min"},        {600, "10 min"},
                                                 {900, "15 min"},       {1800, "30 min"}};
    return choices;
}

std::span<const DurationChoice> handOffChoices() {
    static constexpr DurationChoice choices[] = {{300, "5 min"},
                                                 {900, "15 min"},
                                                 {1800, "30 min"},
                                                 {3600, "1 hour"},
                                                 {std::nullopt, "Never"}};
    return choices;
}

std::string_view tintTitle(OverlayTint tint) {
    static constexpr std::string_view titles[] = {"Auto", "Light", "Dark"};
    return titles[static_cast<std::size_t>(tint)];
}

std::string_view styleTitle(LockStyle style) {
    static constexpr std::string_view titles[] = {"Frosted", "Ambient", "Solid"};
    return titles[static_cast<std::size_t>(style)];
}

std::string_view styleDetail(LockStyle style) {
    static constexpr std::string_view details[] = {
        "A live blur of your screen", "Only colour shows through", "Nothing shows through"};
    return details[static_cast<std::size_t>(style)];
}

std::string_view cornerTitle(TriggerSettings::Corner corner) {
    static constexpr std::string_view titles[] = {"Top left", "Top right", "Bottom left",
                                                  "Bottom right"};
    return titles[static_cast<std::size_t>(corner)];
}

std::string_view cornerActionTitle(TriggerSettings::CornerAction action) {
    static constexpr std::string_view titles[] = {"Lock Mac", "Blur Screen"};
    return titles[static_cast<std::size_t>(action)];
}

std::string hiddenIconNote() {
    return fmt::format(
        "With the icon hidden, open {} from Applications to come back here. Your shortcuts keep "
        "working.",
        OrvelCore::Brand::name);
}

std::string noShortcuts() {
    return fmt::format(
        "Your desktop keeps keyboard shortcuts to itself. In its own settings, give one the "
        "command "
        "xdg-open {0}://lock, another xdg-open {0}://blur/toggle.",
        OrvelCore::Brand::urlScheme);
}

std::string noPasswordField() {
    return fmt::format(
        "Your account asks for more than a password, such as a one-time code, and {} has no field "
        "for it. It asks your desktop's own locker to lock the screen, and locks no apps.",
        OrvelCore::Brand::name);
}

std::string noBlur(const OrvelCore::Capabilities& offered) {
    if (offered.screenBlur && offered.hidesApps)
        return "Blur Screen hides everything behind one colour: your desktop promises no blur that "
               "makes text unreadable. Nor does it report each move of a window, so there is no "
               "Focus Blur.";
    if (offered.screenBlur)
        return "Blur Screen hides everything behind one colour: your desktop promises no blur that "
               "makes text unreadable. Nor does it say which window is in use, so there is no "
               "Focus "
               "Blur.";
    return "Your desktop lets no program stand above the others, so there is neither Blur Screen "
           "nor Focus Blur.";
}

}  // namespace OrvelUI::SettingsText
