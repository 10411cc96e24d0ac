#include "OrvelBlur/BlurBackend.h"
#include "OrvelBlur/Easing.h"

#include "Support/Prelude.h"

using namespace OrvelBlur;

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

}  // namespace
