#include "OrvelCore/MenuRules.h"

TEST(MenuPanelPlacement, HangsUnderTheItemWithinTheSides) {
    constexpr Rect screen{0, 0, 1440, 900};
    constexpr Rect second{1440, -100, 1000, 900};
    struct Case {
        Rect anchor;
        Size size;
        Rect screen;
        Point origin;
    };
    const Case cases[] = {
        {{700, 0, 24, 24}, {320, 400}, screen, {552, 24}},
        {{1410, 0, 24, 24}, {320, 400}, screen, {1112, 24}},
        {{88, 0, 24, 24}, {320, 400}, screen, {8, 24}},
        {{100, 0, 24, 24}, {320, 400}, {0, 0, 300, 900}, {-28, 24}},
        {{1450, -100, 24, 24}, {320, 400}, second, {1448, -76}},
        // Halves are rounded away from zero, for both signs.
        {{700, 0, 25, 24}, {320, 400}, screen, {553, 24}},
        {{-800, 0, 25, 24}, {320, 400}, {-1440, 0, 1440, 900}, {-948, 24}},
        // A bar at the bottom, and panels that are too high for either side.
        {{700, 876, 24, 24}, {320, 400}, screen, {552, 476}},
        {{700, 0, 24, 24}, {320, 1200}, screen, {552, 24}},
        {{700, 500, 24, 24}, {320, 600}, screen, {552, 524}},
    };
    for (const auto& [anchor, size, area, origin] : cases)
        EXPECT_EQ(MenuPanelPlacement::frame(anchor, size, area),
                  (Rect{origin.x, origin.y, size.width, size.height}))
            << anchor.x << ", " << anchor.y;
    EXPECT_EQ(MenuPanelPlacement::room({700, 0, 24, 24}, screen), 868);
    EXPECT_EQ(MenuPanelPlacement::room({700, 876, 24, 24}, screen), 868);
}
