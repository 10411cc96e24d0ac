#include <linux/input-event-codes.h>

#include "OrvelSystem/X11/KeyCodes.h"

#include "Support/Prelude.h"

using namespace OrvelSystem;

namespace {

using Names = std::map<std::string, std::uint8_t, std::less<>>;

TEST(KeyCodes, everyPlaceIsThereOnceUnderEachOfItsNames) {
    std::set<int> mac;
    std::set<int> evdev;
    std::set<std::string_view> names;
    const KeyCodes codes{Names{}};
    for (const KeyPlace& place : KeyCodes::places()) {
        EXPECT_TRUE(mac.insert(place.macKeyCode).second) << place.xkbName;
        EXPECT_TRUE(evdev.insert(place.evdevCode).second) << place.xkbName;
        EXPECT_TRUE(names.insert(place.xkbName).second) << place.xkbName;
        const auto keycode = codes.xKeycode(place.macKeyCode);
        ASSERT_TRUE(keycode) << place.xkbName;
        EXPECT_EQ(codes.macKeyCode(*keycode), place.macKeyCode) << place.xkbName;
    }
    // Codes that the Mac does not use, and Fn, for which X has no key code.
    const std::set<int> missing{0x34, 0x3F, 0x42, 0x44, 0x46, 0x4D, 0x6C, 0x70};
    for (int code = 0; code <= 0x7E; ++code)
        EXPECT_NE(mac.contains(code), missing.contains(code)) << code;
}

TEST(KeyCodes, namesWinOverTheUsualPlace) {
    // A map in which L and K are swapped, and Q is at the usual position of W.
    const KeyCodes codes(Names{{"AC09", 45}, {"AC08", 46}, {"AD01", 25}});
    EXPECT_EQ(codes.xKeycode(37), 45);
    EXPECT_EQ(codes.xKeycode(40), 46);
    EXPECT_EQ(codes.macKeyCode(45), 37);
    EXPECT_EQ(codes.xKeycode(12), 25);
    EXPECT_EQ(codes.macKeyCode(25), 12);
    // W is not named, and Q occupies its usual position.
    EXPECT_EQ(codes.xKeycode(13), std::nullopt);
    EXPECT_EQ(codes.xKeycode(0), KEY_A + 8);
}

}  // namespace
