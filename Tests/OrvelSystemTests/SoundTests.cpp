#include "OrvelCore/SoundSynth.h"
#include "OrvelSystem/InterfaceSounds.h"
#include "OrvelSystem/SoundPlayer.h"

namespace {

TEST(InterfaceSounds, AreMissedOnlyWhereTheUserSaysNo) {
    using Domain = PropertyValue::Dictionary;
    const auto with = [](PropertyValue value) {
        return Domain{{std::string(InterfaceSounds::key), std::move(value)}};
    };
    const std::vector<std::pair<std::optional<Domain>, bool>> cases = {
        {std::nullopt, true},
        {Domain{}, true},
        {Domain{{"another", std::int64_t{0}}}, true},
        {with(std::int64_t{0}), false},
        {with(std::int64_t{1}), true},
        {with(std::string("0")), true},
        {with(0.0), true},
    };
    for (std::size_t i = 0; i < cases.size(); ++i)
        EXPECT_EQ(InterfaceSounds::enabled(cases[i].first), cases[i].second) << i;
}

}  // namespace
