#include <bit>

#include "OrvelCore/SoundSynth.h"

#include "Support/Prelude.h"
#include "Support/TemporaryFolder.h"

using namespace OrvelCore;

namespace {

std::uint64_t fnv1a(const std::vector<float>& samples) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const auto sample : samples)
        hash = (hash ^ std::bit_cast<std::uint32_t>(sample)) * 0x100000001b3;
    return hash;
}

std::string outputOf(const std::string& command) {
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (!pipe) return "no pipe";
    std::string output;
    char buffer[4096];
    while (const auto count = std::fread(buffer, 1, sizeof buffer, pipe))
        output.append(buffer, count);
    if (pclose(pipe) != 0) return "failed: " + command;
    return output;
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
    EXPECT_EQ(SoundSynth::rmsDB({}), -120) << "silence has a level, too";
}

TEST(SoundSynth, PacksWhatAnotherProgramReadsBack) {
    const std::vector<float> samples = {2, -2, 0.5F, -0.5F, 0, 1.0F / 32767};
    const std::int16_t expected[] = {32767, -32767, 16384, -16384, 0, 1};
    const TemporaryFolder folder;
    const auto write = [&](const char* name, const std::vector<std::uint8_t>& bytes) {
        writeText(folder / name, std::string(bytes.begin(), bytes.end()));
        return (folder / name).string();
    };
    const std::string file = write("six.wav", SoundSynth::wav(samples));
    std::string told;
    for (const char field : std::string("tcrbse"))
        told += outputOf(fmt::format("soxi -{} {}", field, file));
    EXPECT_EQ(told, "wav\n1\n44100\n16\n6\nSigned Integer PCM\n");
    const std::string raw = outputOf("sox -D " + file + " -t s16 -L -");
    ASSERT_EQ(raw.size(), sizeof expected);
    EXPECT_EQ(std::memcmp(raw.data(), expected, sizeof expected), 0);

    EXPECT_EQ(SoundSynth::wav({}).size(), 44U);
    EXPECT_EQ(outputOf("soxi -s " + write("none.wav", SoundSynth::wav({}))), "0\n");
}
