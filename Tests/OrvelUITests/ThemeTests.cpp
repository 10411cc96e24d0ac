#include "OrvelUI/Contrast.h"

TEST(Contrast, FollowsTheDefinition) {
    EXPECT_NEAR(Contrast::ratio(0xFFFFFF, 0x000000), 21, 1e-9);
    EXPECT_EQ(Contrast::ratio(0x3CC6D0, 0x3CC6D0), 1);
    EXPECT_NEAR(Contrast::ratio(0x777777, 0xFFFFFF), 4.48, 0.005);
    EXPECT_NEAR(Contrast::luminance(0xFF0000), 0.2126, 1e-9);
    EXPECT_GT(Contrast::ratio(Palette::lockInk, Palette::island), 17);
    EXPECT_EQ(Contrast::blend(0xFF0080, 0.5, 0x00FF00), 0x808040U);
    EXPECT_EQ(Contrast::blend(0x123456, 1, 0xFFFFFF), 0x123456U);
    EXPECT_EQ(Contrast::blend(0x123456, 0, 0xFEDCBA), 0xFEDCBAU);
}
