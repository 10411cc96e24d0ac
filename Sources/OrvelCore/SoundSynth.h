#pragma once

#include <cstdint>
#include <vector>

#include "OrvelCore/Sound.h"

/// The feedback sounds, computed from formulas. Every machine and build produces identical bytes.
/// Samples are mono, from -1 to 1.
namespace OrvelCore::SoundSynth {

/// Samples per second.
inline constexpr std::int32_t sampleRate = 44100;

std::vector<float> samples(LockSound sound);

/// Applies one gain to all samples: it raises or lowers their loudness to -24 dB, or to less if the
/// peak would exceed -3 dB. Silence is unchanged.
std::vector<double> level(std::vector<double> samples);

/// Size of a WAV file's header in bytes.
inline constexpr std::uint32_t wavHeaderSize = 44;

/// Returns a WAV file with signed 16-bit samples. Samples outside -1 to 1 are clipped.
std::vector<std::uint8_t> wav(const std::vector<float>& samples);

/// Loudness and peak in decibels relative to full scale; -120 and -240 for silence.
double rmsDB(const std::vector<float>& samples);
double peakDB(const std::vector<float>& samples);

}  // namespace OrvelCore::SoundSynth
