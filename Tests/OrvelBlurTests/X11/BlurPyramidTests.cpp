#include "OrvelBlur/X11/BlurPyramid.h"

namespace {

const PixelSize scenes[] = {{1920, 1080}, {960, 540}, {401, 3}, {2, 2}, {1, 1}};

TEST(BlurPyramidTest, shrinksByHalvesAtMostAndNeverToNothing) {
    for (const auto& scene : scenes) {
        for (int radius = 0; radius <= 200; ++radius) {
            auto larger = scene;
            for (const auto& level : BlurPyramid::levels(scene, radius)) {
                for (const auto side : {&PixelSize::width, &PixelSize::height}) {
                    EXPECT_GE(level.*side, 1) << radius;
                    EXPECT_LE(level.*side, larger.*side) << radius;
                    // A step of more than two would skip pixels. Rounding errors add up.
                    EXPECT_GE(level.*side * 2 + 2, larger.*side) << radius;
                }
                larger = level;
            }
        }
    }
}

}  // namespace
