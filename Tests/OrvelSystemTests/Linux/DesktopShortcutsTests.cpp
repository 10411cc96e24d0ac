#include "OrvelSystem/Linux/DesktopShortcuts.h"

#include "Support/Prelude.h"

using namespace OrvelCore;
using OrvelSystem::DesktopShortcuts::reserved;
using Modifiers = Shortcut::Modifiers;

namespace {

std::string note(std::uint32_t keyCode, Modifiers modifiers) {
    const auto check =
        ShortcutRules::check({keyCode, "x", modifiers}, ShortcutSet::Action::quickBlur,
                             {{}, {}, {}, {}}, OSVersion{}, reserved());
    const auto* const warning = std::get_if<ShortcutChecks::Warning>(&check);
    return warning == nullptr ? "" : warning->message;
}

}  // namespace

TEST(DesktopShortcuts, AreThoseOfThisSystem) {
    constexpr std::uint32_t c = 8, l = 37, tab = 48, space = 49, f4 = 118;
    EXPECT_EQ(note(c, Modifiers::control), "Every app uses this to copy.");
    EXPECT_EQ(note(c, Modifiers::control | Modifiers::shift), "Terminals use this to copy.");
    EXPECT_EQ(note(c, Modifiers::command), "") << "nothing copies with Super here";
    EXPECT_EQ(note(l, Modifiers::command), "Many desktops use this to lock the screen.");
    EXPECT_NE(note(l, Modifiers::control).find("address bar"), std::string::npos);
    for (const auto keyCode : {tab, space, f4}) EXPECT_NE(note(keyCode, Modifiers::option), "");
}

TEST(DesktopShortcuts, EachIsListedOnceAsASentence) {
    std::set<std::pair<std::uint32_t, std::int64_t>> seen;
    for (const auto& row : reserved()) {
        EXPECT_TRUE(seen.emplace(row.keyCode, row.modifiers.rawValue).second) << row.message;
        EXPECT_TRUE(row.message.ends_with('.')) << row.message;
        EXPECT_EQ(row.message.find("macOS"), std::string_view::npos) << row.message;
    }
}
