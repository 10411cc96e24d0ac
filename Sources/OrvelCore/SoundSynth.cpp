#include "OrvelCore/SoundSynth.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>
#include <string_view>

namespace OrvelCore::SoundSynth {

namespace {

// Identical bytes on every machine require identical rounding. IEEE addition, multiplication,
// division and square root guarantee it; the library's sine and exponential do not, and even select
// their code by the processor. So this file uses only those operations, and is compiled without
// fused multiply-add.
static_assert(FLT_EVAL_METHOD == 0, "intermediate results must be rounded to double");

using Samples = std::vector<double>;

constexpr double pi = std::numbers::pi;

/// sin(2π · turns) with an error of about 1e-13.
double wave(double turns) {
    // Fold the argument into the quarter turns around 0, where the series converges fast.
    double x = turns - std::floor(turns + 0.5);
    if (x > 0.25) x = 0.5 - x;
    if (x < -0.25) x = -0.5 - x;
    x *= 2 * pi;
    const double square = x * x;
    double sum = 1;
    for (int n = 18; n > 0; n -= 2) sum = 1 - square / (n * (n + 1)) * sum;
    return x * sum;
}

/// exp(-x) with an error of about 1e-13, for x from 0 to 10.
double decay(double x) {
    // The series converges fast for x / 1024; ten squarings then give the result for x.
    x /= 1024;
    double sum = 1;
    for (int n = 6; n > 0; --n) sum = 1 - x / n * sum;
    for (int i = 0; i < 10; ++i) sum *= sum;
    return sum;
}

class Noise {
  public:
    explicit Noise(std::uint64_t seed) : state_(seed) {}

    /// Returns a number from -1 to 1.
    double next() {
        state_ = state_ * 0x5851F42D4C957F2D + 0x14057B7EF767814F;
        return 2 * (static_cast<double>(state_ >> 11) * 0x1p-53) - 1;
    }

  private:
    std::uint64_t state_;
};

double secondsAt(std::size_t index) {
    return static_cast<double>(index) / sampleRate;
}

std::size_t indexAt(double seconds) {
    return static_cast<std::size_t>(seconds * sampleRate);
}

double attack(double time, double length) {
    return std::min(time / length, 1.0);
}

void fadeOut(Samples& samples, double seconds) {
    const std::size_t count = std::min(samples.size(), indexAt(seconds));
    for (std::size_t k = 0; k < count; ++k)
        samples[samples.size() - 1 - k] *= static_cast<double>(k) / static_cast<double>(count);
}

/// A short, soft hiss.
Samples shh(std::size_t count) {
    constexpr double attackLength = 1102.5;  // 25 ms, in samples.
    Noise source(23570);
    double previous = 0;
    double low = 0;
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto position = static_cast<double>(i);
        const double noise = source.next();
        const double high = noise - 0.85 * previous;
        low += 0.55 * (high - low);
        previous = noise;
        const double rest = 1 - position / static_cast<double>(count);
        samples[i] = attack(position, attackLength) * low * (rest * rest);
    }
    return samples;
}

void addNote(Samples& samples, double start, double frequency) {
    const std::size_t first = indexAt(start);
    for (std::size_t i = first; i < samples.size(); ++i) {
        const double time = secondsAt(i - first);
        const double turns = frequency * time;
        samples[i] +=
            (wave(turns) + 0.3 * wave(2.76 * turns)) * decay(time / 0.016) * attack(time, 0.002);
    }
}

/// Two bright taps.
Samples tick(std::size_t count) {
    Samples samples(count);
    addNote(samples, 0, 1568);
    addNote(samples, 0.045, 2093);
    fadeOut(samples, 0.01);
    return samples;
}

/// A low, falling knock.
Samples thud(std::size_t count) {
    Noise source(2000);
    // Accumulate the phase instead of computing it from the time, so that the sweep has no jumps.
    double turns = 0;
    double rumble = 0;
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double time = secondsAt(i);
        turns += (70 + 80 * decay(time / 0.03)) / sampleRate;
        rumble += 0.05 * (source.next() - rumble);
        samples[i] = (wave(turns) + 0.15 * rumble) * attack(time, 0.004) * decay(time / 0.045);
    }
    fadeOut(samples, 0.015);
    return samples;
}

Samples generate(LockSound sound) {
    const auto count = static_cast<std::size_t>(std::lround(duration(sound) * sampleRate));
    switch (sound) {
        case LockSound::lock:
            return shh(count);
        case LockSound::unlock:
            return tick(count);
        case LockSound::failure:
            return thud(count);
    }
    return {};
}

template <class Sample>
double meanSquare(const std::vector<Sample>& samples) {
    if (samples.empty()) return 0;
    double sum = 0;
    for (const double sample : samples) sum += sample * sample;
    return sum / static_cast<double>(samples.size());
}

template <class Sample>
double peak(const std::vector<Sample>& samples) {
    double largest = 0;
    for (const double sample : samples) largest = std::max(largest, std::abs(sample));
    return largest;
}

constexpr double silence = 1e-12;  // lower limit of the logarithm's argument

}  // namespace

std::vector<float> samples(LockSound sound) {
    const Samples leveled = level(generate(sound));
    std::vector<float> result(leveled.size());
    std::ranges::transform(leveled, result.begin(),
                           [](double sample) { return static_cast<float>(sample); });
    return result;
}

std::vector<double> level(std::vector<double> samples) {
    constexpr double wantedRms = 0.06309573444801933;  // -24 dB
    constexpr double highestPeak = 0.7079;             // -3 dB
    const double rms = std::sqrt(meanSquare(samples));
    if (!(rms > 0)) return samples;
    const double loudest = peak(samples);
    double gain = wantedRms / rms;
    if (loudest * gain > highestPeak) gain = highestPeak / loudest;
    for (double& sample : samples) sample *= gain;
    return samples;
}

std::vector<std::uint8_t> wav(const std::vector<float>& samples) {
    constexpr std::uint32_t riffHeaderSize = 8;
    constexpr std::uint32_t bytesPerSample = 2;
    const auto dataSize = static_cast<std::uint32_t>(samples.size() * bytesPerSample);

    std::vector<std::uint8_t> bytes;
    bytes.reserve(wavHeaderSize + dataSize);
    const auto text = [&](std::string_view value) {
        std::ranges::copy(value, std::back_inserter(bytes));
    };
    const auto number = [&](std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i)
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    };
    text("RIFF");
    number(wavHeaderSize - riffHeaderSize + dataSize, 4);
    text("WAVEfmt ");
    number(16, 4);  // size of the format chunk
    number(1, 2);   // PCM
    number(1, 2);   // number of channels
    number(sampleRate, 4);
    number(sampleRate * bytesPerSample, 4);
    number(bytesPerSample, 2);
    number(8 * bytesPerSample, 2);
    text("data");
    number(dataSize, 4);
    for (const double sample : samples) {
        const long value = std::lround(std::clamp(sample, -1.0, 1.0) * 32767);
        number(static_cast<std::uint32_t>(value), bytesPerSample);
    }
    return bytes;
}

double rmsDB(const std::vector<float>& samples) {
    return 10 * std::log10(std::max(meanSquare(samples), silence));
}

double peakDB(const std::vector<float>& samples) {
    return 20 * std::log10(std::max(peak(samples), silence));
}

}  // namespace OrvelCore::SoundSynth
