#include <plist/plist.h>

#include "OrvelAuth/AccountLockoutPolicy.h"

namespace {

using Array = PropertyValue::Array;
using Dictionary = PropertyValue::Dictionary;

PropertyValue number(std::int64_t value) {
    return value;
}
PropertyValue text(const char* value) {
    return std::string(value);
}
PropertyValue policy(PropertyValue maximum) {
    return Dictionary{
        {"policyParameters",
         Dictionary{{"policyAttributeMaximumFailedAuthentications", std::move(maximum)}}}};
}

TEST(AccountLockoutPolicy, LimitIsTheStrictestOfBothShapes) {
    const std::pair<Dictionary, std::optional<int>> table[] = {
        {{}, {}},
        {{{"maxFailedLoginAttempts", number(10)}}, 10},
        {{{"maxFailedLoginAttempts", text("7")}}, 7},
        {{{"maxFailedLoginAttempts", text(" 7")}}, {}},
        {{{"maxFailedLoginAttempts", number(0)}}, {}},
        {{{"maxFailedLoginAttempts", number(-5)}}, {}},
        {{{"maxFailedLoginAttempts", number(10)}, {"any name", Array{policy(number(5))}}}, 5},
        {{{"maxFailedLoginAttempts", number(3)}, {"any name", Array{policy(number(5))}}}, 3},
        // Entries of an unexpected shape are skipped, but not those that follow them.
        {{{"list",
           Array{Dictionary{}, text("x"), number(1), Dictionary{{"policyParameters", number(2)}},
                 policy(text("no")), policy(number(0)), policy(text("6"))}}},
         6},
        {{{"a", Array{policy(number(9))}}, {"b", Array{policy(number(8))}}}, 8},
        {{{"nested", Dictionary{{"list", Array{policy(number(4))}}}}}, {}},
        {{{"policyParameters",
           Dictionary{{"policyAttributeMaximumFailedAuthentications", number(4)}}}},
         {}},
    };
    int row = 0;
    for (const auto& [policies, limit] : table) {
        EXPECT_EQ(AccountLockoutPolicy::limit(policies), limit) << "row " << row;
        ++row;
    }
}

std::optional<int> countIn(std::string_view data) {
    return AccountLockoutPolicy::failedLoginCount(std::as_bytes(std::span(data)));
}

std::string list(const std::string& content) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + content + "</plist>";
}

TEST(AccountLockoutPolicy, ReadsTheCountFromAPropertyList) {
    EXPECT_EQ(countIn(list("<dict><key>creationTime</key><real>1.5</real>"
                           "<key>failedLoginCount</key><integer>4</integer></dict>")),
              4);
    EXPECT_EQ(countIn(list("<dict><key>failedLoginCount</key><string>5</string></dict>")), 5);
    EXPECT_EQ(countIn(list("<dict><key>failedLoginCount</key><integer>-1</integer></dict>")), -1);
    EXPECT_EQ(countIn(list("<dict><key>other</key><integer>4</integer></dict>")), std::nullopt);
    EXPECT_EQ(countIn(list("<array><integer>4</integer></array>")), std::nullopt);
    EXPECT_EQ(countIn(list("<dict><key>failedLoginCount</key><array/></dict>")), std::nullopt);
}

}  // namespace
