#include "OrvelSystem/WindowDescription.h"

using namespace OrvelSystem;
using Dictionary = PropertyValue::Dictionary;

namespace {

Dictionary complete() {
    return {
        {"kCGWindowNumber", std::int64_t{7}},
        {"kCGWindowOwnerPID", std::int64_t{300}},
        {"kCGWindowLayer", std::int64_t{-20}},
        {"kCGWindowBounds",
         Dictionary{{"X", -10.5}, {"Y", std::int64_t{20}}, {"Width", 640.0}, {"Height", 480.0}}}};
}

}  // namespace

TEST(WindowDescription, ReadsNumbersOfEitherKind) {
    const OrvelCore::WindowInfo expected{7, 300, -20, {-10.5, 20, 640, 480}};
    EXPECT_EQ(WindowDescription::windowInfo(complete()), expected);
}

TEST(WindowDescription, AnEntryWithAMissingOrMistypedValueIsNone) {
    for (const char* const key :
         {"kCGWindowNumber", "kCGWindowOwnerPID", "kCGWindowLayer", "kCGWindowBounds"}) {
        auto without = complete();
        without.erase(key);
        EXPECT_EQ(WindowDescription::windowInfo(without), std::nullopt) << key;
        auto mistyped = complete();
        mistyped[key] = std::string("7");
        EXPECT_EQ(WindowDescription::windowInfo(mistyped), std::nullopt) << key;
    }
    for (const char* const side : {"X", "Y", "Width", "Height"}) {
        auto entry = complete();
        auto bounds = *entry["kCGWindowBounds"].get<Dictionary>();
        bounds.erase(side);
        entry["kCGWindowBounds"] = bounds;
        EXPECT_EQ(WindowDescription::windowInfo(entry), std::nullopt) << side;
    }
}
