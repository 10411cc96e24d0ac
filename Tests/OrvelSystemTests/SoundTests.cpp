#include "OrvelCore/SoundSynth.h"
#include "OrvelSystem/InterfaceSounds.h"
#include "OrvelSystem/SoundPlayer.h"

#include "Support/Prelude.h"

namespace {

using namespace OrvelSystem;
using OrvelCore::LockSound;

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

TEST(SoundPlayer, ComputesEachSoundOnceAndBeginsItAnew) {
    std::vector<std::string> calls;
    struct Sound final : PlayableSound {
        explicit Sound(std::vector<std::string>& list) : calls(list) {}
        void stop() override { calls.emplace_back("stop"); }
        void play() override { calls.emplace_back("play"); }
        std::vector<std::string>& calls;
    };
    SoundPlayer player([&](LockSound sound, const auto& wav) -> std::unique_ptr<PlayableSound> {
        using namespace OrvelCore::SoundSynth;
        EXPECT_EQ(wav.size(), wavHeaderSize + 2 * samples(sound).size());
        calls.emplace_back(rawValue(sound));
        if (sound == LockSound::unlock) return nullptr;
        return std::make_unique<Sound>(calls);
    });
    for (const auto sound : {LockSound::lock, LockSound::lock, LockSound::failure,
                             LockSound::unlock, LockSound::unlock})
        player.play(sound);
    EXPECT_THAT(calls, ElementsAre("lock", "stop", "play", "stop", "play", "failure", "stop",
                                   "play", "unlock"));
}

}  // namespace
