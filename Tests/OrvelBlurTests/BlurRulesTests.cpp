#include <numeric>

#include <gmock/gmock.h>

#include "OrvelBlur/BlurBackend.h"
#include "OrvelBlur/Easing.h"
#include "OrvelBlur/Grain.h"

using namespace OrvelBlur;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(BlurBackendTest, theServerBlursOnlyWhereThatWasVerified) {
    EXPECT_EQ(choose(true, 15, {15}), BlurBackend::skyLight);
    EXPECT_EQ(choose(true, 26, {15, 26}), BlurBackend::skyLight);
    EXPECT_EQ(choose(true, 14, {15}), BlurBackend::visualEffect);
    EXPECT_EQ(choose(true, 26, {15}), BlurBackend::visualEffect);
    EXPECT_EQ(choose(false, 15, {15}), BlurBackend::visualEffect);
    EXPECT_EQ(choose(true, 15, {}), BlurBackend::visualEffect);
}

TEST(EasingTest, slowsDownTowardsTheEndAndStaysInside) {
    EXPECT_EQ(Easing::easeOut(-1), 0);
    EXPECT_EQ(Easing::easeOut(0), 0);
    EXPECT_EQ(Easing::easeOut(0.25), 0.578125);
    EXPECT_EQ(Easing::easeOut(0.5), 0.875);
    EXPECT_EQ(Easing::easeOut(1), 1);
    EXPECT_EQ(Easing::easeOut(2), 1);
}

TEST(GrainTest, isTheSameNoiseOnEveryRun) {
    EXPECT_THAT(Grain::pixels(0, 7), IsEmpty());
    EXPECT_THAT(Grain::pixels(-1, 7), IsEmpty());
    EXPECT_THAT(Grain::pixels(2, 0), ElementsAre(60, 71, 209, 170));
    EXPECT_THAT(Grain::pixels(2, 7), ElementsAre(61, 233, 156, 237));
    const auto tile = Grain::pixels(Grain::tileSize, Grain::seed);
    ASSERT_EQ(tile.size(), 16384U);
    EXPECT_EQ(std::accumulate(tile.begin(), tile.end(), 0), 2113456);
    EXPECT_THAT(std::vector(tile.end() - 4, tile.end()), ElementsAre(205, 193, 128, 101));
}

}  // namespace
