#include <linux/input-event-codes.h>

#include "OrvelSystem/X11/KeyCodes.h"

namespace {

using Names = std::map<std::string, std::uint8_t, std::less<>>;

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
