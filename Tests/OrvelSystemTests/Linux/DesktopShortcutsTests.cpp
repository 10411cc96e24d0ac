#include "OrvelSystem/Linux/DesktopShortcuts.h"

using OrvelSystem::DesktopShortcuts::reserved;

TEST(DesktopShortcuts, EachIsListedOnceAsASentence) {
    std::set<std::pair<std::uint32_t, std::int64_t>> seen;
    for (const auto& row : reserved()) {
        EXPECT_TRUE(seen.emplace(row.keyCode, row.modifiers.rawValue).second) << row.message;
        EXPECT_TRUE(row.message.ends_with('.')) << row.message;
        EXPECT_EQ(row.message.find("macOS"), std::string_view::npos) << row.message;
    }
}
