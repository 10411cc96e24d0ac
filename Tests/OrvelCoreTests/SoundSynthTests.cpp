#include <bit>

#include "OrvelCore/SoundSynth.h"

namespace {

std::uint64_t fnv1a(const std::vector<float>& samples) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const auto sample : samples)
        hash = (hash ^ std::bit_cast<std::uint32_t>(sample)) * 0x100000001b3;
    return hash;
}

}  // namespace

TEST(SoundSynth, GivesTheSameBytesEverywhere) {
    struct Expected {
        std::size_t count;
        std::uint64_t hash;
    };
    // Computed by an independent program in another language.
    const std::map<LockSound, Expected> sounds = {
        {LockSound::lock, {7938, 0x8d3ccf2d763fbad7}},
        {LockSound::unlock, {5292, 0xc0379dfc311ab0da}},
        {LockSound::failure, {7056, 0x1036f70d49b133db}},
    };
    for (const auto& [sound, expected] : sounds) {
        const auto samples = SoundSynth::samples(sound);
        EXPECT_EQ(samples.size(), expected.count);
        EXPECT_EQ(fnv1a(samples), expected.hash) << rawValue(sound);
        EXPECT_EQ(samples.front(), 0);
        EXPECT_NEAR(SoundSynth::rmsDB(samples), -24, 0.001);
        EXPECT_LE(SoundSynth::peakDB(samples), -3);
    }
    EXPECT_EQ(SoundSynth::rmsDB({}), -120) << "silence has a level";
}

TEST(SoundSynth, PacksSamplesAsAWaveFileOf16Bits) {
    using namespace std::string_literals;
    const auto wav = SoundSynth::wav({2, -2, 0.5F, -0.5F, 0, 1.0F / 32767});
    EXPECT_EQ(std::string(wav.begin(), wav.end()),
              "RIFF\x30\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x44\xAC\0\0\x88\x58\x01\0\x02\0\x10\0"s
              "data\x0C\0\0\0\xFF\x7F\x01\x80\0\x40\0\xC0\0\0\x01\0"s);
    EXPECT_EQ(SoundSynth::wav({}).size(), 44U);
}
