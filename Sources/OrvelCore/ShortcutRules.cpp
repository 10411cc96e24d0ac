#include "OrvelCore/ShortcutRules.h"

#include <fmt/core.h>

#include "OrvelCore/Text.h"

namespace OrvelCore {

using Modifiers = Shortcut::Modifiers;
using namespace ShortcutChecks;

namespace {

constexpr Modifiers command = Modifiers::command;
constexpr Modifiers control = Modifiers::control;
constexpr Modifiers controlCommand = Modifiers::control | Modifiers::command;
constexpr Modifiers shiftCommand = Modifiers::shift | Modifiers::command;

constexpr ReservedShortcut macOSTable[] = {
    {49, command, "macOS uses this for Spotlight."},
    {49, control, "macOS uses this to switch input sources."},
    {12, controlCommand, "macOS uses this to lock the screen."},
    {3, controlCommand, "macOS uses this for full screen."},
    {48, command, "macOS uses this to switch apps."},
    {50, command, "macOS uses this to switch windows."},
    {20, shiftCommand, "macOS uses this for screenshots."},
    {21, shiftCommand, "macOS uses this for screenshots."},
    {23, shiftCommand, "macOS uses this for screenshots."},
    {37, command, "Browsers use this for the address bar."},
    {11, command, "Many apps use this for bold."},
    {12, command, "Every app uses this to quit."},
    {13, command, "Every app uses this to close a window."},
    {4, command, "Every app uses this to hide."},
    {46, command, "Every app uses this to minimize."},
    {8, command, "Every app uses this to copy."},
    {9, command, "Every app uses this to paste."},
    {7, command, "Every app uses this to cut."},
    {6, command, "Every app uses this to undo."},
    {0, command, "Every app uses this to select all."},
    {1, command, "Every app uses this to save."},
    {35, command, "Every app uses this to print."},
    {45, command, "Every app uses this for a new window."},
    {17, command, "Many apps use this for a new tab."},
    {31, command, "Every app uses this to open a file."},
    {3, command, "Every app uses this to find."},
    {43, command, "Every app uses this for its settings."},
};

struct NamedKey {
    std::uint32_t keyCode;
    std::string_view name;
};

constexpr NamedKey namedKeys[] = {
    {49, "Space"}, {36, "Return"}, {48, "Tab"},  {51, "Delete"}, {53, "Esc"}, {123, "←"},
    {124, "→"},    {125, "↓"},     {126, "↑"},   {122, "F1"},    {120, "F2"}, {99, "F3"},
    {118, "F4"},   {96, "F5"},     {97, "F6"},   {98, "F7"},     {100, "F8"}, {101, "F9"},
    {109, "F10"},  {103, "F11"},   {111, "F12"},
};

bool isSameCombination(const Shortcut& a, const Shortcut& b) {
    return a.keyCode == b.keyCode && a.modifiers == b.modifiers;
}

}  // namespace

std::span<const ReservedShortcut> ShortcutRules::reservedOnMacOS() {
    return macOSTable;
}

ShortcutCheck ShortcutRules::check(const Shortcut& shortcut, ShortcutSet::Action action,
                                   const ShortcutSet& set, const OSVersion& osVersion,
                                   std::span<const ReservedShortcut> reserved) {
    if (!shortcut.modifiers.intersects(Modifiers::command | Modifiers::option | Modifiers::control))
        return Refused{
            "Add Command, Control or Option, so the shortcut never takes a key from your typing."};
    if (osVersion.major == 15 && osVersion.minor < 2 &&
        !shortcut.modifiers.intersects(Modifiers::command | Modifiers::control))
        return Refused{
            "macOS 15.0 and 15.1 block shortcuts that use only Option. Add Command or Control."};
    for (const auto other : allCases<ShortcutSet::Action>()) {
        if (other != action && set[other] && isSameCombination(*set[other], shortcut))
            return Refused{fmt::format("Already used for {}.", title(other))};
    }
    for (const auto& row : reserved) {
        if (row.keyCode == shortcut.keyCode && row.modifiers == shortcut.modifiers)
            return Warning{std::string(row.message)};
    }
    return Ok{};
}

std::optional<std::string> ShortcutRules::label(std::uint32_t keyCode,
                                                const std::optional<std::string>& characters) {
    for (const auto& key : namedKeys) {
        if (key.keyCode == keyCode) return std::string(key.name);
    }
    if (!characters) return std::nullopt;
    auto text = Text::upperCase(Text::trim(*characters));
    if (Text::characterCount(text) != 1) return std::nullopt;
    return text;
}

}  // namespace OrvelCore
