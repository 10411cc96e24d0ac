#include "OrvelUI/LockCardFormat.h"
#include "OrvelUITests/Cards.h"

TEST(LockCardFormat, InitialsAreOfTheFirstAndTheLastWord) {
    const std::pair<std::string, std::string> rows[] = {{"", "?"},
                                                        {" \t\n", "?"},
                                                        {"ada", "A"},
                                                        {"Ada Lovelace", "AL"},
                                                        {" ada  king lovelace ", "AL"},
                                                        {"Émile zola", "ÉZ"},
                                                        {"\U0001F468\u200D\U0001F373 cook",
                                                         "\U0001F468\u200D\U0001F373"
                                                         "C"}};
    for (const auto& [name, initials] : rows) EXPECT_EQ(LockCardFormat::initials(name), initials);
}

TEST(LockCardFormat, TimeFollowsTheLocaleWithoutAMark) {
    struct Row {
        std::string locale, zone, text;
    };
    for (const auto& [locale, zone, text] :
         {Row{"en_GB", "UTC", "14:05"}, Row{"de_DE", "Europe/Berlin", "15:05"},
          Row{"en_US", "UTC", "2:05"}, Row{"en_US", "America/New_York", "9:05"},
          Row{"ko_KR", "UTC", "2:05"}, Row{"fr_FR", "Asia/Kolkata", "19:35"}})
        EXPECT_EQ(LockCardFormat::time(cardTime, {locale}, {zone}), text) << locale;
}
